// The lexer of the expression language.
#pragma once

#include <cstddef>
#include <iosfwd>

#include "parser/DLGLexerBase.h"

/// Turns the text of an expression into tokens, in five modes: ordinary text, comment, string,
/// association name, pattern.
///
/// Comments run from "(*" to the first "*)" and may span lines. Strings, association names and
/// patterns may not; the first two know the escapes \n, \r, \t, \\ and that of their closing
/// character. What breaks these rules throws ParseException; any other character that begins or
/// completes no token is dropped as DLGLexerBase says.
class DLGLexer : public DLGLexerBase {
public:
    /// The token length for which the driver keeps room.
    static constexpr std::size_t defaultBufferSize = 32768;

    /// Reports dropped characters on the standard error stream.
    explicit DLGLexer(DLGStringInput* input, std::size_t bufferSize = defaultBufferSize);
    /// Reports dropped characters on a stream of the caller's.
    DLGLexer(DLGStringInput* input, std::size_t bufferSize, std::ostream& errorStream);

    /// The automaton of all lexers of this class, for whoever checks it.
    static const DLGAutomaton& automaton();

protected:
    Outcome act(int& number) override;
    int wordNumber(std::string_view word) const override;
    Outcome actAtEnd(int& number) override;

private:
    Outcome actInText(int number);
    Outcome actInComment(int number);
    Outcome actInQuotes(int number);
    Outcome openQuotes(int mode);
    Outcome closeQuotes();
    Outcome replaceEscape(std::string_view replacement);

    int commentLine_ = 0;
    int commentColumn_ = 0;
};
