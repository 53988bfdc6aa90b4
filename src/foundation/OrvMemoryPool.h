// The memory from which the small objects of a compilation are made.
#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <vector>

/// Keeps pieces of memory that were given back, a list for each size and each thread, so that a
/// compilation makes and drops its many small objects without asking the system each time.
///
/// It stands behind the operator new of counted objects, counts and bodies, and behind the regions
/// in which most of them lie (OrvMemoryRegion). It changes nothing of what these promise: every
/// piece is an allocation of the global operator new, may be given back by another thread than the
/// one that took it, and is then kept by that one. A thread keeps no more than the limit, and of
/// the pieces of powers of two only those that leave room for seven more of their size; what is
/// over goes back at once, and all of it when the thread ends or the library is unloaded. Builds
/// that look for faults of memory use keep nothing, since a piece that is used again would hide
/// them.
class __attribute__((visibility("default"))) OrvMemoryPool {
public:
    /// How many bytes a thread keeps unless a host says otherwise.
#ifdef EXPRPARSER_WITHOUT_POOL
    static constexpr std::size_t defaultLimit = 0;
#else
    static constexpr std::size_t defaultLimit = std::size_t{8} * 1024 * 1024;
#endif
    /// The largest size of a piece that is kept, in bytes: small sizes in steps, and the powers of
    /// two up to it.
    static constexpr std::size_t largestChunk = std::size_t{64} * 1024;

    /// Memory for an object of `size` bytes, aligned as operator new does; throws std::bad_alloc.
    static void* allocate(std::size_t size);
    /// Gives back what allocate() returned for the same size; null is nothing.
    static void deallocate(void* memory, std::size_t size) noexcept;

    /// Sets how many bytes each thread may keep from now on, for the whole process; with 0, nothing
    /// is kept: what this thread has kept goes back at once, what another thread has when that
    /// ends.
    static void setLimit(std::size_t bytes) noexcept;
    /// Whether the limit is more than nothing.
    static bool keepsAny() noexcept;

private:
    static void deallocateFirst(void* memory, std::size_t size) noexcept;
};

/// The allocator of small containers that live as long as a compilation.
template <class T>
struct OrvPoolAllocator {
    using value_type = T;
    // NOLINTNEXTLINE(bugprone-sizeof-expression): of a pointer, too, that is what is meant
    static constexpr std::size_t elementSize = sizeof(T);

    OrvPoolAllocator() = default;
    template <class U>
    // NOLINTNEXTLINE(google-explicit-constructor): containers convert their allocators
    OrvPoolAllocator(const OrvPoolAllocator<U>& /*other*/) noexcept {}

    T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / elementSize) {
            throw std::bad_array_new_length();
        }
        return static_cast<T*>(OrvMemoryPool::allocate(count * elementSize));
    }
    void deallocate(T* memory, std::size_t count) noexcept {
        OrvMemoryPool::deallocate(memory, count * elementSize);
    }

    friend bool operator==(const OrvPoolAllocator& /*left*/, const OrvPoolAllocator& /*right*/) {
        return true;
    }
};

template <class T>
using OrvPoolVector = std::vector<T, OrvPoolAllocator<T>>;
