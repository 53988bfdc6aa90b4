#include "assist/TokenList.h"

#include <algorithm>
#include <sstream>

#include "parser/ColumnToken.h"
#include "parser/DLGLexer.h"
#include "support/ParseException.h"

namespace mmq {

namespace {

// The modes of the lexer, in its order.
OpenQuote quoteOf(int mode) { return static_cast<OpenQuote>(mode); }

}  // namespace

TokenList::TokenList(const std::string& text) {
    std::ostringstream dropped;
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input, DLGLexer::defaultBufferSize, dropped);
    ColumnToken token;
    try {
        for (lexer.readToken(token); token.getNumber() != TOKEN_EOF; lexer.readToken(token)) {
            tokens_.push_back({token.getNumber(),
                               token.getText(),
                               token.getOffset(),
                               token.getEndOffset(),
                               {token.getLine(), token.getColumn()}});
        }
        endPlace_ = {token.getLine(), token.getColumn()};
        isWhole_ = true;
    } catch (const ParseException&) {
        const bool isComment = quoteOf(lexer.mode()) == OpenQuote::comment;
        const bool isAtEnd = input.peek() < 0 &&
                             text.find_first_of("\r\n", lexer.beginOffset()) == std::string::npos;
        open_ = isComment || isAtEnd ? quoteOf(lexer.mode()) : OpenQuote::none;
        openOffset_ = lexer.beginOffset();
    }
}

const PlacedToken* TokenList::findPlace(const std::pair<int, int>& place) const {
    const auto found =
        std::lower_bound(tokens_.begin(), tokens_.end(), place,
                         [](const PlacedToken& token, const std::pair<int, int>& wanted) {
                             return token.place < wanted;
                         });
    return found != tokens_.end() && found->place == place ? &*found : nullptr;
}

const PlacedToken* TokenList::findAt(std::size_t offset) const {
    const PlacedToken* found = nullptr;
    for (const PlacedToken& token : tokens_) {
        if (token.offset <= offset && offset <= token.endOffset) {
            found = &token;
        }
    }
    return found;
}

const PlacedToken* TokenList::next(const PlacedToken& token) const {
    const auto index = static_cast<std::size_t>(&token - tokens_.data());
    return index + 1 < tokens_.size() ? &tokens_[index + 1] : nullptr;
}

}  // namespace mmq
