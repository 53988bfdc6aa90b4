#include "rw/RWClassicCString.h"

#include <algorithm>

void RWClassicCString::insert(std::size_t position, std::string_view text) {
    text_.insert(std::min(position, text_.size()), text);
}

void RWClassicCString::remove(std::size_t position, std::size_t count) {
    text_.erase(std::min(position, text_.size()), count);
}

std::size_t RWClassicCString::index(std::string_view text, std::size_t from) const {
    return text_.find(text, from);
}

void RWClassicCString::toUpper() {
    for (char& byte : text_) {
        if (byte >= 'a' && byte <= 'z') {
            byte = static_cast<char>(byte - 'a' + 'A');
        }
    }
}

void RWClassicCString::toLower() {
    for (char& byte : text_) {
        if (byte >= 'A' && byte <= 'Z') {
            byte = static_cast<char>(byte - 'A' + 'a');
        }
    }
}

std::uint32_t RWClassicCString::hash() const {
    constexpr std::uint32_t offsetBasis = 2166136261U;
    constexpr std::uint32_t prime = 16777619U;
    std::uint32_t hash = offsetBasis;
    for (const char byte : text_) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
    }
    return hash;
}
