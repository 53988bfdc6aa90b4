// The text of an expression, with what is needed to point into it.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Options.h"
#include "SourceFile.h"

namespace mmq {

/// An error in the text that the compiler itself would pass over.
struct TextError {
    int line;
    int column;
    std::string sentence;
    std::string hint = {};  ///< a line of advice, or empty
};

/// A place that a message is about, as it is shown.
struct MessagePlace {
    std::string file;  ///< empty for a text that stands in no file of several
    int line = 0;      ///< 0 for no place
    int column = 0;
    std::string excerpt;  ///< the source line with a caret below, or empty
    /// The bytes that the message is about, of the file or of the text that stands in none.
    std::size_t offset = 0;
    std::size_t endOffset = 0;
};

/// The text of one expression, and the places of its tokens.
///
/// Lines and columns of messages are the lexer's, which counts bytes, and tab stops; what they
/// point at is found by the byte offset of the token that begins there. A text that was read from
/// a file of several expressions knows where it stands in that file.
class ExpressionText {
public:
    explicit ExpressionText(std::string text, TextOrigin origin = {});

    const std::string& text() const { return text_; }
    const TextOrigin& origin() const { return origin_; }

    /// The pieces that the lexer would drop, in order, each with a sentence about it.
    const std::vector<TextError>& droppedTexts() const { return dropped_; }

    /// What is shown for a place of the text: the same place, or where that is in the file.
    MessagePlace place(int line, int column) const;

    /// The byte at a place of a message; past the end for a place that the text does not have.
    std::size_t offsetOf(int line, int column) const;

private:
    friend class IndexingLexer;

    void refuseNul();

    // The bytes of a token, or of what is spoken of like one.
    struct Bytes {
        std::size_t first;
        std::size_t last;
    };

    std::string text_;
    TextOrigin origin_;
    std::map<std::pair<int, int>, Bytes> tokens_;  // by line and column
    std::vector<TextError> dropped_;
};

/// Reads the text that the options name: the argument, a file, or the standard input. Throws
/// std::runtime_error with a sentence where it cannot be read.
ExpressionText readExpression(const Options& options);

}  // namespace mmq
