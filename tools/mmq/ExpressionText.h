// The text of an expression, with what is needed to point into it.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Options.h"

namespace mmq {

/// An error in the text that the compiler itself would pass over.
struct TextError {
    int line;
    int column;
    std::string sentence;
};

/// The text of one expression, and the places of its tokens.
///
/// Lines and columns of messages are the lexer's, which counts bytes, and tab stops; what they
/// point at is found by the byte offset of the token that begins there.
class ExpressionText {
public:
    explicit ExpressionText(std::string text);

    const std::string& text() const { return text_; }

    /// The pieces that the lexer would drop, in order, each with a sentence about it.
    const std::vector<TextError>& droppedTexts() const { return dropped_; }

    /// The source line at a place and, below it, a caret under the character: two lines, each with
    /// a line end. Of a very long line, what stands around the place. Empty for a place that the
    /// text does not have.
    std::string excerpt(int line, int column) const;

private:
    friend class IndexingLexer;

    std::size_t offsetOf(int line, int column) const;
    void index();

    std::string text_;
    std::map<std::pair<int, int>, std::size_t> offsets_;  // by line and column
    std::vector<TextError> dropped_;
};

/// Reads the text that the options name: the argument, a file, or the standard input. Throws
/// std::runtime_error with a sentence where it cannot be read.
ExpressionText readExpression(const Options& options);

}  // namespace mmq
