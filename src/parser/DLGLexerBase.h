// The runtime of the lexer: position, token text, the loop that drives an automaton, and errors.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>

#include "parser/ColumnToken.h"
#include "parser/DLGStringInput.h"

/// Where a piece of the text stands that the lexer dropped as invalid.
struct InvalidToken {
    int line;
    int column;              ///< of the first character of the token that it was to be part of
    std::size_t offset;      ///< the first byte dropped
    std::size_t endOffset;   ///< one past the last byte dropped
    int stopColumn;          ///< of the character at which the automaton stopped
    std::size_t stopOffset;  ///< of that character, or of the end of the text
};

/// A table-driven automaton: for each state and byte the state that follows, and for each state
/// what is done with the lexeme that ends there. NUL has no transition, and a blank between two
/// tokens of the first mode is passed over without asking. Constant data.
struct DLGAutomaton {
    static constexpr std::size_t maximumStates = 96;
    static constexpr std::uint8_t noState = 0xFF;

    /// What becomes of a lexeme: it is no token, the token of the state, a word, whose token the
    /// lexer looks up, the token of the state with the text between two quotes, nothing, or what
    /// the lexer's action decides.
    enum class Effect : std::uint8_t { invalid, token, word, quoted, skip, action };

    std::array<std::array<std::uint8_t, 256>, maximumStates> next{};
    std::array<std::uint8_t, maximumStates> token{};
    std::array<Effect, maximumStates> effect{};
};

/// Runs an automaton over the input, one token a call.
///
/// A token is the longest run of characters that the automaton has transitions for; there is no
/// going back. The state then reached names the action: return a token, skip the lexeme, or keep
/// its text and go on with the same lexeme. A state that accepts nothing is an error: a line goes
/// to the error stream, the character at which the automaton stopped is dropped with the text
/// gathered so far, and scanning goes on in the same mode.
///
/// Made on the stack for one text; the input and the error stream must outlive it.
class DLGLexerBase {
public:
    /// Throws OrvException "No input stream." where `input` is null. `bufferSize` is the token
    /// length, in characters, up to which room is kept for the next one. The state in which a
    /// lexeme of a mode starts has the mode's number.
    DLGLexerBase(DLGStringInput* input, std::size_t bufferSize, std::ostream& errorStream,
                 const DLGAutomaton& automaton);
    DLGLexerBase(const DLGLexerBase&) = delete;
    DLGLexerBase& operator=(const DLGLexerBase&) = delete;
    virtual ~DLGLexerBase();

    /// The next token, made by `tokenTemplate`; the end of input again and again after the last.
    TokenPtr nextToken(const ColumnToken& tokenTemplate);
    /// Makes `token` the next token.
    void readToken(ColumnToken& token);

    /// How many invalid tokens were dropped.
    int lexicalErrorCount() const { return lexicalErrorCount_; }

    /// The current mode, from 0. Changing it, in an action or before the first token, throws
    /// ParseException for a mode of 5 or more.
    int mode() const { return mode_; }
    void setMode(int mode) {
        if (mode >= modeCount) {
            failMode(mode);
        }
        mode_ = mode;
    }

    /// The line that actions have counted up to, from 1. A line or a column past the largest number
    /// is that number.
    int line() const { return line_; }
    /// The place of the token that an action is asked about, for that and for what it throws.
    int beginColumn() const { return beginColumn_; }
    std::size_t beginOffset() const { return beginOffset_; }

protected:
    /// What an action decides about the lexeme that was recognised: it ends a token, it is nothing,
    /// or the token goes on behind it.
    enum class Outcome { token, skip, more };

    /// Runs the action of the state at which the automaton stopped, for a state that has one;
    /// `number` is the token to return, and may be changed.
    virtual Outcome act(int& number) = 0;
    /// The number of the token that a word is.
    virtual int wordNumber(std::string_view word) const = 0;
    /// Runs the action of the end of the input, met where a lexeme would start.
    virtual Outcome actAtEnd(int& number) = 0;

    /// Called for each piece of text that is dropped; writes "invalid token near line LINE (text
    /// was 'TEXT')" and a line end to the error stream.
    virtual void reportInvalid(const InvalidToken& invalid);

    /// Throws ParseException with the message, at the token that an action is asked about and with
    /// its text so far.
    [[noreturn]] void fail(const std::string& message) const;

    // What actions work on.
    /// What the automaton recognised before the action, as it stands in the input.
    std::string_view lexeme() const { return lexeme_; }
    /// Appends a piece of the input, or a constant, to the text of the token.
    void appendText(std::string_view text) {
        if (text_.empty()) {
            text_ = text;
        } else {
            appendToOwnText(text);
        }
    }
    /// Counts a line feed that was read, or a tab: the next column is a tab stop's.
    void newline();
    void tab();

private:
    /// The state that the automaton reached, and what it read on the way.
    struct Run {
        std::size_t state;
        const char* begin;
        const char* end;

        std::string_view lexeme() const { return {begin, static_cast<std::size_t>(end - begin)}; }
        std::string_view unquoted() const {
            return {begin + 1, static_cast<std::size_t>(end - begin) - 2};
        }
    };

    static constexpr int modeCount = 5;

    [[noreturn]] void failMode(int mode) const;
    void appendToOwnText(std::string_view text);
    void dropText();
    const char* beginLexeme();
    Run runAutomaton(const char* begin);
    Outcome endLexeme(std::size_t state, int& number);
    bool endByAction(std::size_t state, ColumnToken& token);
    bool recognize(ColumnToken& token);
    void dropInvalid();
    std::string textSoFar() const;
    std::size_t endColumn() const { return input_->offset() - columnOrigin_; }
    void setEndColumn(std::size_t column) { columnOrigin_ = input_->offset() - column; }
    // The number of what stands behind `count` others, or the largest there is.
    static int numberBehind(std::size_t count) {
        constexpr std::size_t largest = std::numeric_limits<int>::max();
        return static_cast<int>(std::min(count, largest - 1)) + 1;
    }

    DLGStringInput* input_;
    std::ostream& errorStream_;
    const DLGAutomaton& automaton_;
    std::size_t bufferSize_;
    std::string_view lexeme_;
    // What actions made of the token before that: one piece as it stands where it came from, or
    // several.
    std::string_view text_;
    std::string ownText_;
    bool hasOwnText_ = false;
    int mode_ = 0;
    int line_ = 1;
    // The bytes before this one have no column in the line; behind a tab it lies before the line,
    // so that differences are taken as modulo numbers.
    std::size_t columnOrigin_ = 0;
    int beginColumn_ = 1;
    std::size_t beginOffset_ = 0;
    int lexicalErrorCount_ = 0;
};
