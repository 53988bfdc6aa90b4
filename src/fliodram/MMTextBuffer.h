// The memory in which evaluations join texts.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "fliodram/MMEvaluationContext.h"

/// A text that grows piece by piece, in memory that the context keeps for the next such text; what
/// comes of it takes one allocation of its size, unless it is long.
///
/// Made on the stack by what makes the text; another one may live inside it. All of them begin with
/// the same memory, whatever was evaluated before: what a long text takes follows from its pieces.
class MMTextBuffer {
public:
    /// Throws std::bad_alloc.
    explicit MMTextBuffer(MMEvaluationContext& context) : context_(context) {
        text_.swap(context.spareText_);
        text_.clear();
        text_.reserve(shortest);
        capacity_ = text_.capacity();
    }
    MMTextBuffer(const MMTextBuffer&) = delete;
    MMTextBuffer& operator=(const MMTextBuffer&) = delete;
    ~MMTextBuffer() {
        if (text_.capacity() == capacity_) {
            text_.swap(context_.spareText_);
        }
    }

    /// What the text is appended to.
    std::string& text() { return text_; }
    /// The text as it is now: a copy, or itself where it is long. Throws std::bad_alloc.
    std::string release() {
        return text_.capacity() == capacity_ ? std::string(text_) : std::move(text_);
    }

private:
    static constexpr std::size_t shortest = 2048;

    MMEvaluationContext& context_;
    std::string text_;
    std::size_t capacity_;  // before it grew
};
