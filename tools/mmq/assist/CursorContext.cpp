#include "assist/CursorContext.h"

#include <algorithm>

#include "parser/KeywordTable.h"
#include "parser/TokenNumber.h"

namespace mmq {

namespace {

// A name, or a keyword, which may become a name.
bool isNameOrKeyword(const PlacedToken& token) {
    return token.number == TOKEN_VARIABLE_OR_FUNCTION ||
           KeywordTable::lookup(token.text) == token.number;
}

}  // namespace

bool isNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '_';
}

bool isName(const std::string& text) {
    const TokenList list(text);
    return list.isWhole() && list.tokens().size() == 1 && list.tokens().front().text == text &&
           list.tokens().front().number == TOKEN_VARIABLE_OR_FUNCTION;
}

CursorContext::CursorContext(const std::string& text, std::size_t cursor) : offset_(cursor) {
    const std::string before = text.substr(0, cursor);
    const TokenList list(before);
    tokens_ = list.tokens();
    if (list.isWhole()) {
        takeWord(before);
        begun_ = begunWord();
    } else {
        offset_ = std::min(cursor, list.openOffset() + 1);
        begun_ = begunQuote(list.open());
    }
    written_ = before.substr(offset_);
}

void CursorContext::takeWord(const std::string& before) {
    if (!tokens_.empty() && tokens_.back().endOffset == before.size() &&
        isNameOrKeyword(tokens_.back())) {
        offset_ = tokens_.back().offset;
        tokens_.pop_back();
    }
}

int CursorContext::lastToken() const { return tokens_.empty() ? TOKEN_EOF : tokens_.back().number; }

Begun CursorContext::begunWord() const {
    switch (lastToken()) {
        case TOKEN_DOLLAR:
            return Begun::attribute;
        case TOKEN_AT:
            return Begun::label;
        case TOKEN_LET:
        case TOKEN_FOR_ALL:
        case TOKEN_THERE_EXISTS:
            return Begun::nothing;  // a new name
        default:
            return Begun::word;
    }
}

Begun CursorContext::begunQuote(OpenQuote open) const {
    if (open == OpenQuote::association) {
        return Begun::association;
    }
    return open == OpenQuote::string && isClassNameNext() ? Begun::className : Begun::nothing;
}

// Behind "all", and where the class of something is compared.
bool CursorContext::isClassNameNext() const {
    auto token = tokens_.rbegin();
    while (token != tokens_.rend() && token->number == TOKEN_LEFT_PARENTHESIS) {
        ++token;
    }
    if (token != tokens_.rend() && token->text == "all") {
        return true;
    }
    if (lastToken() != TOKEN_EQUAL && lastToken() != TOKEN_NOT_EQUAL) {
        return false;
    }
    const auto endsOperand = [](const PlacedToken& other) {
        return other.text == "class" || other.number == TOKEN_AND || other.number == TOKEN_OR ||
               other.number == TOKEN_IMPLIES || other.number == TOKEN_LEFT_BRACE;
    };
    const auto end = std::find_if(tokens_.rbegin(), tokens_.rend(), endsOperand);
    return end != tokens_.rend() && end->text == "class";
}

}  // namespace mmq
