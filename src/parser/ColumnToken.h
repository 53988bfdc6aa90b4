// Tokens with their places.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "foundation/OrvCountedPtr.h"
#include "parser/TokenNumber.h"

/// A token: its number, its text and the line of its first character, counted from 1.
class CommonToken {
public:
    CommonToken() = default;
    CommonToken(int number, std::string text, int line)
        : number_(number), line_(line), text_(std::move(text)) {}

    int getNumber() const { return number_; }
    int getLine() const { return line_; }
    /// The text as the lexer left it: without quotes, with escapes replaced.
    const std::string& getText() const { return text_; }

private:
    int number_ = TOKEN_INVALID;
    int line_ = 0;
    std::string text_;
};

/// A token that also knows its column, and which bytes of the text it was made from.
///
/// Made by the token buffer's template (makeToken()), shared by the buffer and the parser, and
/// dropped with them when a text is parsed.
class ColumnToken : public CommonToken {
public:
    ColumnToken() = default;
    ColumnToken(int number, std::string text, int line)
        : CommonToken(number, std::move(text), line) {}

    /// Makes a token as the lexer recognises it; the caller sets its column and its bytes.
    OrvCountedPtr<ColumnToken> makeToken(int number, std::string text, int line) const {
        return OrvCountedPtr<ColumnToken>(new ColumnToken(number, std::move(text), line));
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
