#include "repository/ModelReader.h"

#include <utility>

#include "repository/JsonReader.h"
#include "repository/XmiReader.h"

namespace {

std::unique_ptr<RepositoryModel> read(SourceText source, const ReadOptions& options) {
    const std::size_t start = source.view().find_first_not_of(" \t\r\n");
    const bool isJson = start != std::string_view::npos && source.view()[start] == '{';
    return isJson ? JsonReader::read(std::move(source), options)
                  : XmiReader::read(std::move(source), options);
}

}  // namespace

std::unique_ptr<RepositoryModel> readModel(const std::string& path, const ReadOptions& options) {
    return read(SourceText::readFile(path), options);
}

std::unique_ptr<RepositoryModel> readModelText(std::string_view text, const std::string& name,
                                               const ReadOptions& options) {
    return read(SourceText::copyOf(text, name), options);
}
