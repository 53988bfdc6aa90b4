#include "parser/ColumnTokenBuffer.h"

#include <algorithm>
#include <bit>
#include <utility>

ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), depth_(depth), chunk_(chunk) {}

const ColumnToken& ColumnTokenBuffer::readNext() {
    if (mask_ == 0) {
        grow(1);
    }
    ColumnToken& token = tokens_[first_];
    lexer_.readToken(token);
    count_ = 1;
    next_ = &token;
    return token;
}

void ColumnTokenBuffer::fill(std::size_t count) {
    if (count > mask_) {
        grow(count);
    }
    for (; count_ < count; ++count_) {
        lexer_.readToken(tokens_[(first_ + count_) & mask_]);
    }
    next_ = &tokens_[first_];
}

// There is always room for one token more than are looked at: the one that was taken last.
void ColumnTokenBuffer::grow(std::size_t count) {
    const std::size_t least = tokens_.empty() ? depth_ + 2 : chunk_;
    std::vector<ColumnToken> ring(std::bit_ceil(std::max(count + 1, least)), *template_);
    for (std::size_t i = 0; i < count_; ++i) {
        ring[i] = std::move(tokens_[(first_ + i) & mask_]);
    }
    tokens_.swap(ring);
    mask_ = tokens_.size() - 1;
    first_ = 0;
    next_ = count_ != 0 ? tokens_.data() : nullptr;
}
