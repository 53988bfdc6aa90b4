// mmq info: what a model consists of.
#include <algorithm>
#include <iostream>

#include "Commands.h"
#include "Counted.h"
#include "Csv.h"
#include "ExitStatus.h"
#include "ModelLoading.h"
#include "foundation/TextOutput.h"

namespace mmq {

namespace {

void appendNames(std::string& json, const std::vector<std::string_view>& names) {
    json += '[';
    const char* separator = "";
    for (const std::string_view name : names) {
        json += separator;
        appendJsonString(json, name);
        separator = ",";
    }
    json += ']';
}

void writeJson(const RepositoryModel& model) {
    std::string json = "{\"objects\":" + std::to_string(model.objectCount()) +
                       ",\"roots\":" + std::to_string(model.roots().size()) + ",\"classes\":[";
    const char* separator = "";
    for (const ClassSummary& summary : model.classes()) {
        json += separator;
        json += "{\"name\":";
        appendJsonString(json, summary.name);
        json += ",\"count\":" + std::to_string(summary.count) + ",\"attributes\":";
        appendNames(json, summary.attributes);
        json += ",\"associations\":";
        appendNames(json, summary.associations);
        json += '}';
        separator = ",";
    }
    std::cout << json << "]}\n";
}

std::string joined(const std::vector<std::string_view>& names, const char* separator) {
    std::string text;
    for (const std::string_view name : names) {
        text += text.empty() ? "" : separator;
        text += name;
    }
    return text;
}

// Names in one field are separated by blanks.
void writeCsv(const RepositoryModel& model) {
    std::cout << "class,count,attributes,associations\n";
    for (const ClassSummary& summary : model.classes()) {
        std::cout << csvField(std::string(summary.name)) << ',' << summary.count << ','
                  << csvField(joined(summary.attributes, " ")) << ','
                  << csvField(joined(summary.associations, " ")) << '\n';
    }
}

void writeText(const RepositoryModel& model) {
    std::cout << counted(model.objectCount(), "object") << ", "
              << counted(model.roots().size(), "root") << '\n';
    for (const ClassSummary& summary : model.classes()) {
        std::cout << '\n' << summary.name << ": " << summary.count << '\n';
        if (!summary.attributes.empty()) {
            std::cout << "    attributes:   " << joined(summary.attributes, ", ") << '\n';
        }
        if (!summary.associations.empty()) {
            std::cout << "    associations: " << joined(summary.associations, ", ") << '\n';
        }
    }
}

}  // namespace

int runInfo(const Options& options) {
    const std::unique_ptr<RepositoryModel> model = loadModel(options);
    switch (options.format) {
        case Format::json:
            writeJson(*model);
            break;
        case Format::csv:
            writeCsv(*model);
            break;
        default:
            writeText(*model);
    }
    return EXIT_DONE;
}

}  // namespace mmq
