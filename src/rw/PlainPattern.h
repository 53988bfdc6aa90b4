// Patterns that need no engine.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A pattern that consists of characters that stand for themselves, perhaps bound to the beginning
/// or the end of the text: it is found without the engine, with the same answer. A value, copied
/// freely.
class PlainPattern {
public:
    /// The plain form of a well-formed pattern, where it has one and is no longer than 256 bytes.
    static std::optional<PlainPattern> of(std::string_view pattern);

    /// Whether the pattern matches anywhere in the text.
    bool matches(std::string_view subject) const {
        if (isAtStart_ && isAtEnd_) {
            return subject == text_;
        }
        if (isAtStart_) {
            return subject.starts_with(text_);
        }
        return isAtEnd_ ? subject.ends_with(text_) : subject.find(text_) != std::string_view::npos;
    }

private:
    std::string text_;
    bool isAtStart_ = false;
    bool isAtEnd_ = false;
};
