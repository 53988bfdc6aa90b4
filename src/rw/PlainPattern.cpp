#include "rw/PlainPattern.h"

namespace {

bool isIn(char c, char first, char last) { return c >= first && c <= last; }

bool isWordCharacter(char c) {
    return isIn(c, 'a', 'z') || isIn(c, 'A', 'Z') || isIn(c, '0', '9') || c == '_';
}

}  // namespace

// Only ASCII characters are taken to stand for themselves.
std::optional<PlainPattern> PlainPattern::of(std::string_view pattern) {
    constexpr std::string_view plainMarks = " !\"#%&',-/:;<=>@`~";
    constexpr std::size_t longest = 256;  // comparing a longer one at each byte takes too long
    PlainPattern plain;
    if (pattern.size() > longest) {
        return std::nullopt;
    }
    plain.isAtStart_ = pattern.starts_with('^');
    for (std::size_t i = plain.isAtStart_ ? 1 : 0; i < pattern.size(); ++i) {
        const bool isLast = i + 1 == pattern.size();
        if (pattern[i] == '$' && isLast) {
            plain.isAtEnd_ = true;
        } else if (pattern[i] == '\\' && !isLast && isIn(pattern[i + 1], '!', '~') &&
                   !isWordCharacter(pattern[i + 1])) {
            plain.text_ += pattern[++i];
        } else if (isWordCharacter(pattern[i]) || plainMarks.find(pattern[i]) != plainMarks.npos) {
            plain.text_ += pattern[i];
        } else {
            return std::nullopt;
        }
    }
    return plain;
}
