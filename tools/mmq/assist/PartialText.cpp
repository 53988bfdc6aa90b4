// The parser reads a text from left to right and stops at the first token that does not fit. So a
// word fits behind a text if the parser, given both, gets past the word; and what is missing at the
// end of a text is found by trying what may close something, before what begins something new.
#include "assist/PartialText.h"

#include <array>
#include <limits>
#include <set>
#include <sstream>

#include "ExpressionText.h"
#include "Messages.h"
#include "assist/TokenList.h"
#include "parser/SyntaxParser.h"
#include "parser/TokenNumber.h"
#include "support/ParseException.h"

namespace mmq {

namespace {

using Place = std::pair<int, int>;

/// Keeps the place of the message of a parse.
class ErrorPlace : public SilentDialogs {
public:
    void showMessage(int line, int column, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {
        place_ = {line, column};
    }
    const Place& place() const { return place_; }

private:
    Place place_;
};

// The place of the token at which the parser stops; behind all others where it does not.
Place stopOf(const std::string& text) {
    constexpr int behind = std::numeric_limits<int>::max();
    ErrorPlace error;
    std::ostringstream dropped;
    try {
        const bool isWhole = static_cast<bool>(SyntaxParser::parse(error, text.c_str(), dropped));
        return isWhole ? Place{behind, behind} : error.place();
    } catch (const ParseException& exception) {
        return {exception.getLine(), exception.getColumn()};
    }
}

bool stopsAtEnd(const std::string& text) {
    const TokenList tokens(text);
    return tokens.isWhole() && stopOf(text) == tokens.endPlace();
}

// A piece that may follow, and gets the text nearer to its end; empty where none may.
std::string pieceBehind(const std::string& text) {
    constexpr std::array<const char*, 12> pieces{")",  "}", "over", "in", "then", "else",
                                                 "=>", "=", "{",    ":",  "[x]",  "x"};
    const Continuation continuation(text);
    for (const char* piece : pieces) {
        if (continuation.accepts(piece)) {
            return piece;
        }
    }
    return {};
}

}  // namespace

bool isUnfinished(const std::string& text) {
    return TokenList(text).open() == OpenQuote::comment ||
           (stopsAtEnd(text) && ExpressionText(text).droppedTexts().empty());
}

// What stands before the end of a comment is no word.
bool needsAnotherLine(const std::string& line) {
    static const std::set<int> unfinished{
        TOKEN_EQUAL, TOKEN_NOT_EQUAL,  TOKEN_REGEXP_EQUAL, TOKEN_REGEXP_NOT_EQUAL,
        TOKEN_LESS,  TOKEN_LESS_EQUAL, TOKEN_GREATER,      TOKEN_GREATER_EQUAL,
        TOKEN_ARROW, TOKEN_LEFT_BRACE, TOKEN_DOUBLE_ARROW, TOKEN_LEFT_PARENTHESIS,
        TOKEN_COMMA, TOKEN_PLUS,       TOKEN_MINUS,        TOKEN_SLASH,
        TOKEN_STAR,  TOKEN_IN,         TOKEN_THEN,         TOKEN_ELSE,
        TOKEN_OVER,  TOKEN_IMPLIES,    TOKEN_AND,          TOKEN_OR,
        TOKEN_NOT};
    const TokenList list(line);
    const std::vector<PlacedToken>& tokens = list.tokens();
    return list.isWhole() && line.find("*)") == std::string::npos && !tokens.empty() &&
           unfinished.count(tokens.back().number) > 0;
}

std::optional<std::string> withEnding(std::string text) {
    constexpr int mostPieces = 100;
    for (int count = 0; count < mostPieces && stopsAtEnd(text); ++count) {
        text.append(" ").append(pieceBehind(text));
    }
    return stopOf(text).first == std::numeric_limits<int>::max() ? std::optional(text)
                                                                 : std::nullopt;
}

Continuation::Continuation(const std::string& before) : before_(before) {
    before_.push_back(' ');
    const TokenList tokens(before_);
    place_ = tokens.endPlace();
}

bool Continuation::isPossible() const { return stopOf(before_) >= place_; }

bool Continuation::accepts(const std::string& word) const {
    return stopOf(before_ + word) > place_;
}

}  // namespace mmq
