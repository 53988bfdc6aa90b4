#include "lint/MessageTemplate.h"

#include <string_view>
#include <utility>

namespace mmq {

namespace {

/// Cuts one message into its pieces.
class MessageParser {
public:
    MessageParser(const LocatedText& message, FileErrors& errors)
        : message_(message), text_(message.text), errors_(errors) {}

    std::vector<MessagePiece> parse() {
        while (at_ < text_.size()) {
            const char byte = text_[at_];
            const bool isBrace = byte == '{' || byte == '}';
            if (isBrace && at_ + 1 < text_.size() && text_[at_ + 1] == byte) {
                literal_ += byte;
                at_ += 2;
            } else if (byte == '{') {
                takeExpression();
            } else {
                if (byte == '}') {
                    fail(at_, "This brace closes nothing; a brace of the text is written }}.");
                }
                literal_ += byte == '\n' ? ' ' : byte;
                ++at_;
            }
        }
        endLiteral();
        return std::move(pieces_);
    }

private:
    void fail(std::size_t at, const std::string& sentence) {
        errors_.add(message_.origin.offsets[at], sentence);
    }

    void endLiteral() {
        if (!literal_.empty()) {
            pieces_.push_back({std::exchange(literal_, {}), {}});
        }
    }

    void takeExpression() {
        const std::size_t first = at_ + 1;
        const std::size_t end = findEnd(first);
        if (end == std::string_view::npos) {
            fail(at_, "This brace is not closed; a brace of the text is written {{.");
            at_ = text_.size();
            return;
        }
        if (text_.substr(first, end - first).find_first_not_of(" \n") == std::string_view::npos) {
            fail(at_, "There is no expression between these braces.");
        } else {
            endLiteral();
            pieces_.push_back({"", ExpressionText(std::string(text_.substr(first, end - first)),
                                                  message_.origin.part(first, end - first))});
        }
        at_ = end + 1;
    }

    // The brace that closes the one before `at`: braces of the expression come in pairs, and those
    // in its texts, patterns and comments do not count.
    std::size_t findEnd(std::size_t at) const {
        for (int depth = 0; at < text_.size(); ++at) {
            const char byte = text_[at];
            if (byte == '"' || byte == '`') {
                at = endOfQuoted(at);
            } else if (byte == '(' && text_.substr(at, 2) == "(*") {
                at = text_.find("*)", at + 2);
            } else if (byte == '{') {
                ++depth;
            } else if (byte == '}' && depth-- == 0) {
                return at;
            }
            if (at == std::string_view::npos) {
                break;
            }
        }
        return std::string_view::npos;
    }

    // The closing quote; only texts know escapes.
    std::size_t endOfQuoted(std::size_t at) const {
        const char quote = text_[at];
        for (++at; at < text_.size() && text_[at] != quote; ++at) {
            at += quote == '"' && text_[at] == '\\' ? 1 : 0;
        }
        return at < text_.size() ? at : std::string_view::npos;
    }

    const LocatedText& message_;
    std::string_view text_;
    FileErrors& errors_;
    std::size_t at_ = 0;
    std::string literal_;
    std::vector<MessagePiece> pieces_;
};

}  // namespace

std::vector<MessagePiece> parseMessage(const LocatedText& message, FileErrors& errors) {
    return MessageParser(message, errors).parse();
}

}  // namespace mmq
