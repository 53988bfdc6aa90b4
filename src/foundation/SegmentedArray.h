// A growing array whose values do not move.
#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/OrvMemoryPool.h"
#include "foundation/SmallArray.h"

/// An array for many values that are appended one by one, the first of which stand inside it: what
/// is beyond them lies in segments of the pool, so that nothing is copied when it grows, and no
/// piece of memory is larger than the pool keeps. The values need no end. Not copied; belongs to
/// one thread.
template <class T, std::size_t inside>
class SegmentedArray {
    static_assert(std::is_trivially_copyable_v<T> && inside > 0);

public:
    SegmentedArray() = default;
    SegmentedArray(const SegmentedArray&) = delete;
    SegmentedArray& operator=(const SegmentedArray&) = delete;
    ~SegmentedArray() {
        for (T* const segment : segments_) {
            OrvPoolAllocator<T>().deallocate(segment, segmentSize);
        }
    }

    /// The place of a value; valid as long as the array.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        Iterator() = default;
        Iterator(const SegmentedArray& array, std::size_t index) : array_(&array), index_(index) {}

        reference operator*() const { return (*array_)[index_]; }
        pointer operator->() const { return &(*array_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        Iterator operator++(int) { return {*array_, index_++}; }
        friend bool operator==(const Iterator& left, const Iterator& right) = default;

    private:
        const SegmentedArray* array_ = nullptr;
        std::size_t index_ = 0;
    };

    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size_}; }
    std::size_t size() const { return size_; }
    const T& operator[](std::size_t index) const {
        return index < inside
                   ? own_[index]
                   : segments_[(index - inside) / segmentSize][(index - inside) % segmentSize];
    }
    T& operator[](std::size_t index) { return const_cast<T&>(std::as_const(*this)[index]); }

    /// Appends a value that is made of no element.
    template <class... Parts>
    void append(Parts&&... parts) {
        if (end_ == limit_) {
            addSegment();
        }
        *end_++ = T{std::forward<Parts>(parts)...};
        ++size_;
    }

private:
    static constexpr std::size_t segmentSize = OrvMemoryPool::largestChunk / 4 / sizeof(T);

    [[gnu::noinline]] void addSegment() {
        T* const segment = OrvPoolAllocator<T>().allocate(segmentSize);
        try {
            segments_.append(segment);
        } catch (...) {
            OrvPoolAllocator<T>().deallocate(segment, segmentSize);
            throw;
        }
        end_ = segment;
        limit_ = segment + segmentSize;
    }

    std::array<T, inside> own_;
    T* end_ = own_.data();
    T* limit_ = own_.data() + inside;
    std::size_t size_ = 0;
    SmallArray<T*, 4> segments_;
};
