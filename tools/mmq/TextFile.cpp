#include "TextFile.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace {

constexpr std::size_t largestSize = std::size_t{256} << 20U;

// Reads to the end, which a device may not have: a byte more than is allowed is enough.
std::string readBounded(std::istream& stream) {
    constexpr std::size_t pieceSize = std::size_t{64} << 10U;
    std::string text;
    while (stream && text.size() <= largestSize) {
        const std::size_t size = text.size();
        text.resize(size + pieceSize);
        stream.read(text.data() + size, pieceSize);
        text.resize(size + static_cast<std::size_t>(stream.gcount()));
    }
    return text;
}

}  // namespace

namespace mmq {

std::string readTextFile(const std::string& path, const std::string& what) {
    const bool isInput = path == "-";
    std::ifstream file;
    if (!isInput) {
        file.open(path, std::ios::binary);
    }
    std::error_code error;
    if (!isInput && (!file || std::filesystem::is_directory(path, error))) {
        throw std::runtime_error(path + ": " + what + " cannot be read.");
    }
    std::string text = readBounded(isInput ? std::cin : file);
    if (text.size() > largestSize) {
        throw std::runtime_error(path + ": " + what + " is larger than 256 MiB.");
    }
    return text;
}

}  // namespace mmq
