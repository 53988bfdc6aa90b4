#include "parser/ColumnTokenBuffer.h"

#include <algorithm>
#include <bit>

// One token more than the lookahead: the one that was taken last.
ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), chunk_(chunk), tokens_(std::bit_ceil(depth + 2)), mask_(tokens_.size() - 1) {}

void ColumnTokenBuffer::setTemplate(const ColumnToken& tokenTemplate) {
    std::fill(tokens_.begin(), tokens_.end(), tokenTemplate);
}

void ColumnTokenBuffer::fill(std::size_t count) {
    if (count > mask_) {
        grow(count);
    }
    for (; count_ < count; ++count_) {
        lexer_.readToken(tokens_[(first_ + count_) & mask_]);
    }
}

void ColumnTokenBuffer::grow(std::size_t count) {
    std::rotate(tokens_.begin(), tokens_.begin() + static_cast<std::ptrdiff_t>(first_),
                tokens_.end());
    first_ = 0;
    tokens_.resize(std::bit_ceil(std::max(count + 1, chunk_)));
    mask_ = tokens_.size() - 1;
}
