// The buffer between the lexer and the parser.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <vector>

#include "parser/ColumnToken.h"
#include "parser/DLGLexerBase.h"

/// Shows the parser the tokens that come next.
///
/// A token is read from the lexer when somebody looks at it and not before, so that a syntax error
/// is found before a lexical error behind it. The buffer has a ring of tokens that are used again
/// and again; the first one stands in the buffer, with room for what the grammar looks at, and a
/// larger one takes its place when somebody looks further. Borrows the lexer; made on the stack for
/// one text.
class ColumnTokenBuffer {
public:
    static constexpr std::size_t defaultDepth = 1;
    static constexpr std::size_t defaultChunk = 50;

    /// `depth` is the usual lookahead, `chunk` how many tokens the ring has at least when somebody
    /// looks further than that.
    explicit ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth = defaultDepth,
                               std::size_t chunk = defaultChunk);
    ColumnTokenBuffer(const ColumnTokenBuffer&) = delete;
    ColumnTokenBuffer& operator=(const ColumnTokenBuffer&) = delete;

    /// Sets the token of which a larger ring consists at first; it must outlive the buffer's use.
    void setTemplate(const ColumnToken& tokenTemplate) { template_ = &tokenTemplate; }

    /// The token that comes next. Throws what the lexer throws. Valid until somebody looks further.
    const ColumnToken& look() { return next_ != nullptr ? *next_ : readNext(); }
    /// The token `ahead` places on, of which look() is the first.
    const ColumnToken& look(std::size_t ahead) {
        if (next_ == nullptr || behind_ + 1 < ahead) {
            fill(ahead);
        }
        return ring_[(first_ + ahead - 1) & mask_];
    }
    /// Takes the next token, which is valid as one that is looked at.
    const ColumnToken& take() {
        const ColumnToken& token = look();
        next_ = behind_ != 0 ? advance() : nullptr;
        return token;
    }

private:
    const ColumnToken& readNext();
    const ColumnToken* advance();
    void fill(std::size_t count);
    void grow(std::size_t count);

    DLGLexerBase& lexer_;
    const ColumnToken* template_ = nullptr;
    std::size_t depth_;
    std::size_t chunk_;
    std::array<ColumnToken, std::bit_ceil(defaultDepth + 2)> firstRing_;
    std::vector<ColumnToken> largerRing_;
    ColumnToken* ring_ = firstRing_.data();  // the ring in use, of a power of two
    std::size_t mask_ = firstRing_.size() - 1;
    const ColumnToken* next_ = nullptr;  // the token that comes next, null before it is read
    std::size_t first_ = 0;              // its place, before that the place of the one before it
    std::size_t behind_ = 0;             // how many tokens were read behind it
};
