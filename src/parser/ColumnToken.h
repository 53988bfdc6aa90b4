// Tokens with their places.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/OrvCountedPtr.h"
#include "parser/TokenNumber.h"

/// A token: its number, its text and the line of its first character, counted from 1.
class CommonToken {
public:
    CommonToken() = default;
    CommonToken(int number, std::string_view text, int line)
        : number_(number), line_(line), text_(text) {}

    int getNumber() const { return number_; }
    int getLine() const { return line_; }
    /// The text as the lexer left it: without quotes, with escapes replaced.
    const std::string& getText() const { return text_; }

protected:
    void assign(int number, std::string_view text, int line) {
        number_ = number;
        line_ = line;
        text_.assign(text);
    }

private:
    int number_ = TOKEN_INVALID;
    int line_ = 0;
    std::string text_;
};

/// A token that also knows its column, and which bytes of the text it was made from.
///
/// The token buffer has a few, which become one token after the other; the lexer makes others for
/// whoever wants to keep them, by a template (makeToken()).
class ColumnToken : public CommonToken, public OrvCountedObject {
public:
    ColumnToken() = default;
    ColumnToken(int number, std::string_view text, int line) : CommonToken(number, text, line) {}

    /// A new token; the caller sets its column and its bytes.
    OrvCountedPtr<ColumnToken> makeToken(int number, std::string_view text, int line) const {
        return OrvCountedPtr<ColumnToken>(new ColumnToken(number, text, line));
    }

    /// Makes this token another one.
    void become(int number, std::string_view text, int line) { assign(number, text, line); }

    /// The column of the first character, counted from 1.
    int getColumn() const { return column_; }
    void setColumn(int column) { column_ = column; }

    /// The bytes from `offset` up to but not including `endOffset`, counted from 0.
    std::size_t getOffset() const { return offset_; }
    std::size_t getEndOffset() const { return endOffset_; }
    void setOffsets(std::size_t offset, std::size_t endOffset) {
        offset_ = offset;
        endOffset_ = endOffset;
    }

private:
    int column_ = 0;
    std::size_t offset_ = 0;
    std::size_t endOffset_ = 0;
};

using TokenPtr = OrvCountedPtr<ColumnToken>;
