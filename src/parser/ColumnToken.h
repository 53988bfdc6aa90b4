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
    /// A token with a text of its own.
    CommonToken(int number, std::string_view text, int line)
        : number_(number), line_(line), text_(text) {}

    int getNumber() const { return number_; }
    int getLine() const { return line_; }
    /// The text as the lexer left it: without quotes, with escapes replaced.
    std::string getText() const { return std::string(text()); }
    /// The same, valid as long as the token is this one.
    std::string_view text() const { return isBorrowed_ ? borrowedText_ : text_; }

protected:
    void assign(int number, int line) {
        number_ = number;
        line_ = line;
    }
    void assignText(std::string_view text) {
        text_.assign(text);
        isBorrowed_ = false;
    }
    void borrowText(std::string_view text) {
        borrowedText_ = text;
        isBorrowed_ = true;
    }

private:
    int number_ = TOKEN_INVALID;
    int line_ = 0;
    bool isBorrowed_ = false;
    std::string_view borrowedText_;
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

    /// Make this token another one: with a text of its own, or with one that stands in the input
    /// of the lexer and is valid as long as that.
    void become(int number, std::string_view text, int line);
    void becomeBorrowed(int number, std::string_view text, int line) {
        assign(number, line);
        borrowText(text);
    }

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
