#include "TextFile.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace mmq {

std::string readTextFile(const std::string& path, const std::string& what) {
    if (path == "-") {
        return {std::istreambuf_iterator<char>(std::cin), {}};
    }
    std::ifstream stream(path, std::ios::binary);
    std::error_code error;
    if (!stream || std::filesystem::is_directory(path, error)) {
        throw std::runtime_error(path + ": " + what + " cannot be read.");
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace mmq
