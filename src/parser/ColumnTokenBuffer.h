// The buffer between the lexer and the parser.
#pragma once

#include <cstddef>
#include <vector>

#include "parser/ColumnToken.h"
#include "parser/DLGLexerBase.h"

/// Shows the parser the tokens that come next.
///
/// A token is read from the lexer when somebody looks at it and not before, so that a syntax error
/// is found before a lexical error behind it. Tokens are kept in chunks; the lookahead depth is
/// how many of them a new chunk carries over. Borrows the lexer and the template; made on the
/// stack for one text.
class ColumnTokenBuffer {
public:
    static constexpr std::size_t defaultDepth = 1;
    static constexpr std::size_t defaultChunk = 50;

    explicit ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth = defaultDepth,
                               std::size_t chunk = defaultChunk);
    ColumnTokenBuffer(const ColumnTokenBuffer&) = delete;
    ColumnTokenBuffer& operator=(const ColumnTokenBuffer&) = delete;

    /// Sets the token from which all others are made; it must outlive the buffer's use.
    void setTemplate(const ColumnToken& tokenTemplate) { template_ = &tokenTemplate; }

    /// The token `ahead` places on: 1 is the next one. Throws what the lexer throws.
    const ColumnToken& look(std::size_t ahead);
    /// Takes the next token.
    TokenPtr take();

private:
    void fill(std::size_t count);

    DLGLexerBase& lexer_;
    const ColumnToken* template_ = nullptr;
    std::size_t depth_;
    std::size_t chunk_;
    std::vector<TokenPtr> tokens_;
    std::size_t next_ = 0;
};
