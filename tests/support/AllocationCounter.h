// A count of the allocations that are alive in a test program.
#pragma once

#include <cstddef>

/// Counts what the global operator new hands out and operator delete takes back, of every form. A
/// program that links the source file has both replaced, from its start to its end; other programs
/// are left alone. Any thread may ask.
class AllocationCounter {
public:
    /// How many allocations are alive in the whole process.
    static std::ptrdiff_t live() noexcept;
};
