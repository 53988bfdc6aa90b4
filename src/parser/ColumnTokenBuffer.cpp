#include "parser/ColumnTokenBuffer.h"

#include <utility>

ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), depth_(depth), chunk_(chunk) {
    tokens_.reserve(chunk_ + depth_);
}

// Makes sure that `count` tokens are at hand; a chunk that is used up is dropped as a whole.
void ColumnTokenBuffer::fill(std::size_t count) {
    if (next_ >= chunk_) {
        tokens_.erase(tokens_.begin(), tokens_.begin() + static_cast<std::ptrdiff_t>(next_));
        next_ = 0;
    }
    while (tokens_.size() - next_ < count) {
        tokens_.push_back(lexer_.nextToken(*template_));
    }
}

const ColumnToken& ColumnTokenBuffer::look(std::size_t ahead) {
    if (tokens_.size() - next_ < ahead) {
        fill(ahead);
    }
    return *tokens_[next_ + ahead - 1];
}

TokenPtr ColumnTokenBuffer::take() {
    look(1);
    return std::move(tokens_[next_++]);
}
