#include "parser/ColumnTokenBuffer.h"

#include <algorithm>
#include <bit>

ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), depth_(depth), chunk_(chunk) {}

void ColumnTokenBuffer::fill(std::size_t count) {
    if (count > mask_) {
        grow(count);
    }
    for (; count_ < count; ++count_) {
        lexer_.readToken(tokens_[(first_ + count_) & mask_]);
    }
}

// There is always room for one token more than are looked at: the one that was taken last.
void ColumnTokenBuffer::grow(std::size_t count) {
    std::rotate(tokens_.begin(), tokens_.begin() + static_cast<std::ptrdiff_t>(first_),
                tokens_.end());
    first_ = 0;
    const std::size_t least = tokens_.empty() ? depth_ + 2 : chunk_;
    tokens_.resize(std::bit_ceil(std::max(count + 1, least)), *template_);
    mask_ = tokens_.size() - 1;
}
