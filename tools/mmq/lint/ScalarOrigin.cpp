// YAML folds lines, strips indentation and knows escapes, but it never changes the order of what
// is no white space. So the scalar and the file are walked side by side, from one byte that is no
// white space to the next; an escape stands for the character that it means.
#include "lint/ScalarOrigin.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace mmq {

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

bool isBlank(char byte) { return whiteSpace.find(byte) != std::string_view::npos; }

/// A position in the file that moves over what scalars consist of.
class ScalarWalk {
public:
    ScalarWalk(std::string_view text, std::size_t at) : text_(text), at_(at) { begin(); }

    std::size_t at() const { return at_; }

    /// Moves to the next byte that is no white space.
    void skipBlanks() {
        while (at_ < text_.size() && (isBlank(text_[at_]) || isBlankEscape())) {
            at_ += isBlank(text_[at_]) ? 1 : escapeLength();
        }
    }

    /// Moves behind a character that is so many bytes of the scalar.
    void pass(std::size_t length) {
        const bool isEscape = style_ == '"' && peek(0) == '\\';
        if (isEscape || (style_ == '\'' && peek(0) == '\'')) {
            at_ += isEscape ? escapeLength() : 2;
        } else {
            at_ += length;
        }
        at_ = std::min(at_, text_.size());
    }

private:
    char peek(std::size_t ahead) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    // Passes an anchor, the opening quote, or the header of a block.
    void begin() {
        if (peek(0) == '&') {
            at_ = std::min(text_.size(), text_.find_first_of(whiteSpace, at_));
            at_ = std::min(text_.size(), text_.find_first_not_of(whiteSpace, at_));
        }
        style_ = peek(0);
        if (style_ == '"' || style_ == '\'') {
            ++at_;
        } else if (style_ == '|' || style_ == '>') {
            at_ = std::min(text_.size(), text_.find('\n', at_));
        }
    }

    bool isBlankEscape() const {
        constexpr std::string_view blanks = "ntr \t\r\n";
        if (style_ != '"' || peek(0) != '\\') {
            return false;
        }
        return escapeLength() == 2 ? blanks.find(peek(1)) != std::string_view::npos
                                   : isBlankCode(text_.substr(at_ + 2, escapeLength() - 2));
    }

    static bool isBlankCode(std::string_view digits) {
        unsigned code = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        return code <= 0x20U;
    }

    std::size_t escapeLength() const {
        switch (peek(1)) {
            case 'x':
                return 4;
            case 'u':
                return 6;
            case 'U':
                return 10;
            default:
                return 2;
        }
    }

    std::string_view text_;
    std::size_t at_;
    char style_ = '\0';
};

std::size_t characterLength(std::string_view text, std::size_t at) {
    std::size_t end = at + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        ++end;
    }
    return end - at;
}

}  // namespace

TextOrigin originOfScalar(std::shared_ptr<const SourceFile> file, std::size_t begin,
                          const std::string& scalar) {
    TextOrigin origin{std::move(file), {}};
    origin.offsets.reserve(scalar.size() + 1);
    ScalarWalk walk(origin.file->text(), begin);
    for (std::size_t at = 0; at < scalar.size();) {
        if (isBlank(scalar[at])) {
            origin.offsets.push_back(walk.at());
            ++at;
            continue;
        }
        walk.skipBlanks();
        const std::size_t length = characterLength(scalar, at);
        origin.offsets.insert(origin.offsets.end(), length, walk.at());
        walk.pass(length);
        at += length;
    }
    origin.offsets.push_back(walk.at());
    return origin;
}

}  // namespace mmq
