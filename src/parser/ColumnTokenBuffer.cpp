#include "parser/ColumnTokenBuffer.h"

#include <algorithm>
#include <bit>
#include <utility>

ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), depth_(depth), chunk_(chunk) {}

const ColumnToken& ColumnTokenBuffer::readNext() {
    first_ = (first_ + 1) & mask_;
    ColumnToken& token = ring_[first_];
    lexer_.readToken(token);
    next_ = &token;
    return token;
}

const ColumnToken* ColumnTokenBuffer::advance() {
    --behind_;
    first_ = (first_ + 1) & mask_;
    return &ring_[first_];
}

void ColumnTokenBuffer::fill(std::size_t count) {
    look();
    if (count > mask_) {
        grow(count);
    }
    for (; behind_ + 1 < count; ++behind_) {
        lexer_.readToken(ring_[(first_ + behind_ + 1) & mask_]);
    }
}

// There is always room for one token more than are looked at: the one that was taken last.
void ColumnTokenBuffer::grow(std::size_t count) {
    const std::size_t least = std::max(depth_ + 2, chunk_);
    std::vector<ColumnToken> larger(std::bit_ceil(std::max(count + 1, least)), *template_);
    for (std::size_t i = 0; i <= behind_; ++i) {
        larger[i] = std::move(ring_[(first_ + i) & mask_]);
    }
    largerRing_.swap(larger);
    ring_ = largerRing_.data();
    mask_ = largerRing_.size() - 1;
    first_ = 0;
    next_ = ring_;
}
