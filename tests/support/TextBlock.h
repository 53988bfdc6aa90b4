// Tables of texts that are written without quotes.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// The texts of a raw string: one a line, or several with " ;; " between them. A line that begins
/// with a blank continues the text before. Empty lines and lines that begin with // are left out.
inline std::vector<std::string> textsOf(std::string_view block) {
    std::vector<std::string> texts;
    while (!block.empty()) {
        const std::size_t lineEnd = std::min(block.find('\n'), block.size());
        std::string_view line = block.substr(0, lineEnd);
        block.remove_prefix(std::min(lineEnd + 1, block.size()));
        if (line.substr(0, 1) == " " && !texts.empty()) {
            texts.back() += line.substr(line.find_first_not_of(' ') - 1);
            continue;
        }
        while (!line.empty() && line.substr(0, 2) != "//") {
            const std::size_t end = std::min(line.find(" ;; "), line.size());
            texts.emplace_back(line.substr(0, end));
            line.remove_prefix(std::min(end + 4, line.size()));
        }
    }
    return texts;
}
