// A count of the allocations that are alive in a test program, and a way to make them fail.
#pragma once

#include <cstddef>

/// Counts what the global operator new hands out and operator delete takes back, of every form. A
/// program that links the source file has both replaced, from its start to its end, and no pool
/// keeps what is given back (OrvMemoryPool); other programs are left alone. Any thread may ask.
class AllocationCounter {
public:
    /// How many allocations are alive in the whole process.
    static std::ptrdiff_t live() noexcept;
    /// How many bytes they have.
    static std::ptrdiff_t liveBytes() noexcept;

    /// Memory as operator new gets it, but empty where that would throw; for C interfaces.
    static void* allocate(std::size_t size) noexcept;
    static void deallocate(void* memory) noexcept;
};

/// While it lives, an allocation of this thread outside the pattern engine fails: the one after
/// `number` that succeed, and with `forGood` all that follow. One at a time.
class FailingAllocation {
public:
    FailingAllocation(long number, bool forGood) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether an allocation has failed so far.
    bool hasFailed() const noexcept;
};
