// A growing array of plain values.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "foundation/OrvMemoryPool.h"

/// An array for values that are appended one by one, a few for each node of a tree.
///
/// Values are copied as bytes, and growing is kept out of the way, so that appending is a store
/// and a comparison wherever it is called. Not copied; belongs to one thread.
template <class T>
class PlainArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    explicit PlainArray(std::size_t capacity)
        : begin_(allocate(capacity)), end_(begin_), limit_(begin_ + capacity) {}
    PlainArray(const PlainArray&) = delete;
    PlainArray& operator=(const PlainArray&) = delete;
    ~PlainArray() { deallocate(begin_, capacity()); }

    std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }
    const T* begin() const { return begin_; }
    const T* end() const { return end_; }
    const T& operator[](std::size_t index) const { return begin_[index]; }
    T& operator[](std::size_t index) { return begin_[index]; }

    /// Appends a value that is no element.
    void push_back(const T& value) {
        if (end_ == limit_) {
            grow();
        }
        *end_++ = value;
    }
    /// Removes the values from the one of that number on.
    void truncate(std::size_t size) { end_ = begin_ + size; }

private:
    static T* allocate(std::size_t capacity) { return OrvPoolAllocator<T>().allocate(capacity); }
    static void deallocate(T* values, std::size_t capacity) noexcept {
        OrvPoolAllocator<T>().deallocate(values, capacity);
    }

    std::size_t capacity() const { return static_cast<std::size_t>(limit_ - begin_); }

    // What is small grows faster: few texts are long, and few of those that are not quite short.
    [[gnu::noinline]] void grow() {
        constexpr std::size_t small = 256;
        const std::size_t held = size();
        const std::size_t larger = held * (held < small ? 4 : 2);
        T* const values = allocate(larger);
        std::memcpy(static_cast<void*>(values), begin_, held * sizeof(T));
        deallocate(begin_, held);
        limit_ = values + larger;
        begin_ = values;
        end_ = values + held;
    }

    T* begin_;
    T* end_;
    T* limit_;
};
