#include "support/OrvStack.h"

#include <pthread.h>

#include <algorithm>

namespace {

struct Bounds {
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;
    bool areKnown = false;
};

// A quarter of a stack is held back, and no more than this: enough for printing a type or for a
// host's message handler below the deepest level.
constexpr std::size_t largestReserve = std::size_t{256} * 1024;

// Once a thread, and kept out of the way of all other calls.
[[gnu::noinline]] Bounds readBounds() noexcept {
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) {
        return {0, 0, true};
    }
    void* address = nullptr;
    std::size_t size = 0;
    pthread_attr_getstack(&attributes, &address, &size);
    pthread_attr_destroy(&attributes);
    const auto low = reinterpret_cast<std::uintptr_t>(address);
    return {low + std::min(size / 4, largestReserve), low + size, true};
}

// Trivially destructible, so that unloading the library leaves nothing behind in a thread.
thread_local Bounds threadBounds;

}  // namespace

std::uintptr_t OrvStack::limit() noexcept {
    Bounds& bounds = threadBounds;
    if (!bounds.areKnown) {
        bounds = readBounds();
    }
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // Below the reserve is still this stack; only an address beyond either end is another one.
    const bool isOwnStack = here < bounds.high && here + 2 * largestReserve > bounds.low;
    return isOwnStack ? bounds.low : 0;
}

bool OrvStack::hasRoom() noexcept { return !isBelow(limit()); }
