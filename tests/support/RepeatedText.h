// Long texts of the tests.
#pragma once

#include <string>
#include <string_view>

/// The text so many times.
inline std::string repeat(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}
