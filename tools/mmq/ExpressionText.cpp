// The text is lexed once to find out where its tokens stand, by a lexer that remembers what it
// drops instead of reporting it.
#include "ExpressionText.h"

#include <algorithm>

#include "Messages.h"
#include "TextFile.h"
#include "parser/ColumnToken.h"
#include "parser/DLGLexer.h"
#include "support/ParseException.h"

namespace mmq {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::string sentenceForEscape(std::string_view escape) {
    const bool isPrintable = escape.size() > 1 && static_cast<unsigned char>(escape[1]) >= 0x20U;
    return (isPrintable ? "The escape " + std::string(escape) + " does not exist"
                        : std::string("A backslash at the end of a line is no escape")) +
           "; a backslash is written \\\\.";
}

// About what was begun and not finished, or about the character that nothing begins with.
std::string sentenceFor(std::string_view begun, std::string_view dropped) {
    return begun.empty() ? "The character " + inQuotes(dropped) + " has no meaning here."
                         : "The text " + inQuotes(begun) + " is not the whole of anything.";
}

// Where the lexer would say that what follows this text begins.
std::pair<int, int> lexerPlace(std::string_view before) {
    constexpr int tabStop = 8;
    std::pair<int, int> place{1, 1};
    for (const char byte : before) {
        auto& [line, column] = place;
        line += byte == '\n' ? 1 : 0;
        column = byte == '\n'   ? 1
                 : byte == '\t' ? (column - 1) / tabStop * tabStop + tabStop + 1
                                : column + 1;
    }
    return place;
}

}  // namespace

/// Notes where tokens stand, and what it drops.
class IndexingLexer : public DLGLexer {
public:
    IndexingLexer(DLGStringInput& input, ExpressionText& text)
        : DLGLexer(&input, defaultBufferSize), text_(text) {}

    void run() {
        const ColumnToken tokenTemplate;
        try {
            int number = TOKEN_INVALID;
            while (number != TOKEN_EOF) {
                const TokenPtr token = nextToken(tokenTemplate);
                note(token->getLine(), token->getColumn(), token->getOffset(),
                     token->getEndOffset());
                number = token->getNumber();
            }
        } catch (const ParseException&) {
            // The compilation will end at the same place; this is where it points.
            note(line(), beginColumn(), beginOffset(), endOfLine(text_.text_, beginOffset()));
        }
    }

protected:
    void reportInvalid(const InvalidToken& invalid) override {
        std::size_t end = invalid.endOffset;
        while (end < text_.text_.size() && isContinuation(text_.text_[end])) {
            ++end;
        }
        // Bytes that continue a character were spoken of with its first one.
        if (isContinuation(text_.text_[invalid.offset]) && invalid.offset == lastEnd_) {
            lastEnd_ = invalid.endOffset;
            return;
        }
        lastEnd_ = invalid.endOffset;
        const std::string_view dropped =
            std::string_view(text_.text_).substr(invalid.offset, end - invalid.offset);
        const bool isEscape = mode() != 0;
        const std::string_view begun = dropped.substr(0, invalid.stopOffset - invalid.offset);
        const std::size_t offset = isEscape ? invalid.stopOffset - 1 : invalid.offset;
        const int column = isEscape ? invalid.stopColumn - 1 : invalid.column;
        note(invalid.line, column, offset, end);
        text_.dropped_.push_back({invalid.line, column,
                                  isEscape
                                      ? sentenceForEscape(dropped.substr(offset - invalid.offset))
                                      : sentenceFor(begun, dropped)});
    }

private:
    void note(int line, int column, std::size_t first, std::size_t last) {
        text_.tokens_.emplace(std::make_pair(line, column), ExpressionText::Bytes{first, last});
    }

    ExpressionText& text_;
    std::size_t lastEnd_ = static_cast<std::size_t>(-1);
};

ExpressionText::ExpressionText(std::string text, TextOrigin origin)
    : text_(std::move(text)), origin_(std::move(origin)) {
    DLGStringInput input(text_.c_str());
    IndexingLexer(input, *this).run();
    refuseNul();
}

// The lexer takes a NUL for the end, wherever it stands.
void ExpressionText::refuseNul() {
    const std::size_t at = text_.find('\0');
    if (at == std::string::npos) {
        return;
    }
    const auto [line, column] = lexerPlace(std::string_view(text_).substr(0, at));
    tokens_[{line, column}] = {at, at + 1};
    dropped_.push_back({line, column,
                        "A NUL character stands here, which no expression can hold; what follows "
                        "it would be lost."});
}

std::size_t ExpressionText::offsetOf(int line, int column) const {
    const auto found = tokens_.find({line, column});
    return found != tokens_.end() ? found->second.first : std::string::npos;
}

// What has no place in the text is about all of it.
MessagePlace ExpressionText::place(int line, int column) const {
    const auto found = tokens_.find({line, column});
    const bool isInText = found != tokens_.end();
    const Bytes bytes = isInText ? found->second : Bytes{0, text_.size()};
    if (origin_.file == nullptr) {
        return {"",          line,
                column,      isInText ? excerptAt(text_, bytes.first) : std::string(),
                bytes.first, bytes.last};
    }
    const std::size_t first = origin_.offsets[bytes.first];
    const TextPlace place = origin_.file->place(first);
    return {origin_.file->name(),
            static_cast<int>(place.line),
            static_cast<int>(place.column),
            origin_.file->excerpt(first),
            first,
            origin_.offsets[bytes.last]};
}

ExpressionText readExpression(const Options& options) {
    const bool isArgument = options.expression && *options.expression != "-";
    if (isArgument) {
        return ExpressionText(*options.expression);
    }
    return ExpressionText(readTextFile(
        options.expression ? *options.expression : options.expressionFile, "The expression"));
}

}  // namespace mmq
