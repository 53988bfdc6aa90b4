// What the parser makes of texts that are not whole yet.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace mmq {

/// Whether a text is an expression as far as it goes, but ends before the expression does. A text
/// with characters that have no meaning is wrong already.
bool isUnfinished(const std::string& text);

/// Whether no expression ends with this line, as one look at its last word shows: an operator, an
/// opening bracket, a keyword that needs something behind it. A line of a comment that goes on may
/// be taken for one.
bool needsAnotherLine(const std::string& line);

/// The text with what is missing at its end: closing brackets, the words that must come, and names
/// for operands. Nothing where no end makes it an expression.
std::optional<std::string> withEnding(std::string text);

/// Which words the grammar accepts behind a text. The text consists of whole tokens.
class Continuation {
public:
    explicit Continuation(const std::string& before);

    /// Whether the text is right as far as it goes.
    bool isPossible() const;
    /// Whether the text can go on with the word. No word is accepted where the text itself is
    /// wrong.
    bool accepts(const std::string& word) const;

private:
    std::string before_;
    std::pair<int, int> place_;  // of what follows
};

}  // namespace mmq
