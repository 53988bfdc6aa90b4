// Tokens with their places.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/OrvCountedPtr.h"
#include "parser/TokenNumber.h"

/// A token: its number, its text and the line of its first character, counted from 1. The text is
/// a part of somebody else's, or one of its own, which copies of the token share.
class CommonToken {
public:
    CommonToken() = default;
    /// A token with a text of its own.
    CommonToken(int number, std::string_view text, int line) : number_(number), line_(line) {
        assignText(text);
    }

    int getNumber() const { return number_; }
    int getLine() const { return line_; }
    /// The text as the lexer left it: without quotes, with escapes replaced.
    std::string getText() const { return std::string(text_); }
    /// The same, valid as long as the token is this one.
    std::string_view text() const { return text_; }

protected:
    void setNumber(int number) { number_ = number; }
    void setLine(int line) { line_ = line; }
    void assignText(std::string_view text);
    void borrowText(std::string_view text) { text_ = text; }

private:
    /// Never changed once a token has it.
    struct OwnText : OrvCountedObject {
        explicit OwnText(std::string_view text) : characters(text) {}
        std::string characters;
    };

    int number_ = TOKEN_INVALID;
    int line_ = 0;
    std::string_view text_;
    OrvCountedPtr<OwnText> ownText_;  // the last one that the token had
};

/// A token that also knows its column, and which bytes of the text it was made from.
///
/// The token buffer has a few, which become one token after the other; the lexer makes others for
/// whoever wants to keep them, by a template (makeToken()).
class ColumnToken : public CommonToken {
public:
    ColumnToken() = default;
    ColumnToken(int number, std::string_view text, int line) : CommonToken(number, text, line) {}

    /// A new token; the caller sets its column and its bytes.
    OrvCountedPtr<ColumnToken> makeToken(int number, std::string_view text, int line) const {
        return OrvCountedPtr<ColumnToken>(new ColumnToken(number, text, line));
    }

    /// Make this token another one, at its place: with a text of its own, or with one that stands
    /// in the input of the lexer and is valid as long as that.
    void become(int number, std::string_view text);
    void becomeBorrowed(int number, std::string_view text) {
        setNumber(number);
        borrowText(text);
    }
    /// Where the token stands: the line and the column of its first character, and its bytes.
    void setPlace(int line, int column, std::size_t offset, std::size_t endOffset) {
        setLine(line);
        setColumn(column);
        setOffsets(offset, endOffset);
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
