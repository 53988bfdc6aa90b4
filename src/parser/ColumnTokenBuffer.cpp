#include "parser/ColumnTokenBuffer.h"

#include <algorithm>

// One token more than the lookahead: the one that was taken last.
ColumnTokenBuffer::ColumnTokenBuffer(DLGLexerBase& lexer, std::size_t depth, std::size_t chunk)
    : lexer_(lexer), chunk_(std::max<std::size_t>(chunk, 1)), tokens_(depth + 2) {}

void ColumnTokenBuffer::setTemplate(const ColumnToken& tokenTemplate) {
    std::fill(tokens_.begin(), tokens_.end(), tokenTemplate);
}

void ColumnTokenBuffer::fill(std::size_t count) {
    while (count_ < count) {
        if (count_ + 1 >= tokens_.size()) {
            std::rotate(tokens_.begin(), tokens_.begin() + static_cast<std::ptrdiff_t>(first_),
                        tokens_.end());
            first_ = 0;
            tokens_.resize(tokens_.size() + chunk_);
        }
        lexer_.readToken(tokens_[place(count_)]);
        ++count_;
    }
}
