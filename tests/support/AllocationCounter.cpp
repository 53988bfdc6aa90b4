#include "support/AllocationCounter.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

#include "foundation/OrvMemoryPool.h"
#include "support/FailureCountdown.h"

namespace {

std::atomic<std::ptrdiff_t> liveAllocations{0};
std::atomic<std::ptrdiff_t> bytesOfThem{0};

// Runs before any test does.
[[maybe_unused]] const bool isPoolOff = (OrvMemoryPool::setLimit(0), true);

thread_local FailureCountdown countdown;

constexpr std::align_val_t usualAlignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__};

void* allocate(std::size_t size, std::align_val_t alignment = usualAlignment) noexcept {
    if (countdown.take()) {
        return nullptr;
    }
    const auto unit = static_cast<std::size_t>(alignment);
    const std::size_t units = std::max<std::size_t>((size + unit - 1) / unit, 1);
    void* const memory = alignment > usualAlignment ? std::aligned_alloc(unit, units * unit)
                                                    : std::malloc(units * unit);
    liveAllocations += memory != nullptr ? 1 : 0;
    bytesOfThem += static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    return memory;
}

void* allocateOrThrow(std::size_t size, std::align_val_t alignment = usualAlignment) {
    void* const memory = allocate(size, alignment);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void deallocate(void* memory) noexcept {
    liveAllocations -= memory != nullptr ? 1 : 0;
    bytesOfThem -= static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    std::free(memory);
}

}  // namespace

std::ptrdiff_t AllocationCounter::live() noexcept { return liveAllocations; }
std::ptrdiff_t AllocationCounter::liveBytes() noexcept { return bytesOfThem; }

void* AllocationCounter::allocate(std::size_t size) noexcept { return ::allocate(size); }
void AllocationCounter::deallocate(void* memory) noexcept { ::deallocate(memory); }

FailingAllocation::FailingAllocation(long number, bool forGood) noexcept {
    countdown = {number, forGood, false};
}
FailingAllocation::~FailingAllocation() { countdown.untilFailure = -1; }
bool FailingAllocation::hasFailed() const noexcept { return countdown.hasFailed; }

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, std::align_val_t a) { return allocateOrThrow(size, a); }
void* operator new[](std::size_t size, std::align_val_t a) { return allocateOrThrow(size, a); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t a, const std::nothrow_t&) noexcept {
    return allocate(size, a);
}
void* operator new[](std::size_t size, std::align_val_t a, const std::nothrow_t&) noexcept {
    return allocate(size, a);
}
void operator delete(void* memory) noexcept { deallocate(memory); }
void operator delete[](void* memory) noexcept { deallocate(memory); }
void operator delete(void* memory, std::size_t) noexcept { deallocate(memory); }
void operator delete[](void* memory, std::size_t) noexcept { deallocate(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { deallocate(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { deallocate(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { deallocate(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { deallocate(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { deallocate(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { deallocate(memory); }
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    deallocate(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    deallocate(memory);
}
