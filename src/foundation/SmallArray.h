// A growing array whose first values stand inside it.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/OrvMemoryRegion.h"

/// An array for values that are appended one by one, `inside` of them without memory of their own.
///
/// Growing is kept out of the way, so that appending is a store and a comparison wherever it is
/// called. What stands outside comes from a region, or from the pool where there is none. Not
/// copied; belongs to one thread.
template <class T, std::size_t inside>
class SmallArray {
    static_assert(std::is_nothrow_move_constructible_v<T> && inside > 0);

public:
    explicit SmallArray(OrvMemoryRegion* region = nullptr)
        : begin_(own()), end_(begin_), limit_(begin_ + inside), memory_(region) {}
    /// An array of the first values, which stand inside.
    template <class... Values>
    SmallArray(OrvMemoryRegion* region, std::in_place_t /*values*/, Values&&... values)
        : SmallArray(region) {
        static_assert(sizeof...(Values) <= inside);
        (new (static_cast<void*>(end_++)) T(std::forward<Values>(values)), ...);
    }
    SmallArray(const SmallArray&) = delete;
    SmallArray& operator=(const SmallArray&) = delete;
    ~SmallArray() {
        std::destroy(begin_, end_);
        giveBack();
    }

    bool empty() const { return begin_ == end_; }
    std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }
    T* begin() { return begin_; }
    T* end() { return end_; }
    const T* begin() const { return begin_; }
    const T* end() const { return end_; }
    T& back() { return end_[-1]; }
    const T& back() const { return end_[-1]; }
    const T& operator[](std::size_t index) const { return begin_[index]; }
    T& operator[](std::size_t index) { return begin_[index]; }

    /// Appends a value that is made of no element.
    template <class... Parts>
    void append(Parts&&... parts) {
        if (end_ == limit_) {
            grow();
        }
        new (static_cast<void*>(end_)) T{std::forward<Parts>(parts)...};
        ++end_;
    }
    /// Removes the values from the one of that number on.
    void truncate(std::size_t size) {
        std::destroy(begin_ + size, end_);
        end_ = begin_ + size;
    }
    /// Forgets the values, which are ended by somebody else.
    void abandon() { end_ = begin_; }

private:
    T* own() { return reinterpret_cast<T*>(&own_); }
    std::size_t capacity() const { return static_cast<std::size_t>(limit_ - begin_); }

    void giveBack() noexcept {
        if (begin_ != own()) {
            memory_.deallocate(begin_, capacity());
        }
    }

    // What is small grows faster: few texts are long, and few of those that are not quite short.
    [[gnu::noinline]] void grow() {
        constexpr std::size_t small = 256;
        const std::size_t held = size();
        const std::size_t larger = held * (held < small ? 4 : 2);
        T* const values = memory_.allocate(larger);
        std::uninitialized_move(begin_, end_, values);
        std::destroy(begin_, end_);
        giveBack();
        begin_ = values;
        end_ = values + held;
        limit_ = values + larger;
    }

    T* begin_;
    T* end_;
    T* limit_;
    OrvRegionAllocator<T> memory_;
    struct alignas(T) {
        // NOLINTNEXTLINE(bugprone-sizeof-expression): of a pointer, too, that is what is meant
        std::byte bytes[inside * sizeof(T)];
    } own_;
};
