#include "support/OrvStack.h"

#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>

namespace {

struct Bounds {
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;
    bool areKnown = false;
};

// A quarter of a stack is held back, and no more than this: enough for printing a type or for a
// host's message handler below the deepest level.
constexpr std::size_t largestReserve = std::size_t{256} * 1024;

// How far a recursion may go on a stack that the system cannot tell.
constexpr std::size_t assumedRoom = std::size_t{256} * 1024;

// Once a thread, and kept out of the way of all other calls. `assumed` is what served so far
// because the system could not tell.
[[gnu::noinline]] Bounds readBounds(const Bounds& assumed) {
    pthread_attr_t attributes;
    // glibc takes its error from here where an allocation fails, and crashes where this is 0, since
    // a host's own malloc need not set it.
    errno = ENOMEM;
    const int error = pthread_getattr_np(pthread_self(), &attributes);
    if (error == ENOMEM) {
        throw std::bad_alloc();
    }
    if (error != 0) {
        const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
        return assumed.high != 0
                   ? assumed
                   : Bounds{here - assumedRoom, std::numeric_limits<std::uintptr_t>::max(), false};
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

std::uintptr_t OrvStack::limit() {
    Bounds& bounds = threadBounds;
    if (!bounds.areKnown) {
        bounds = readBounds(bounds);
    }
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // Below the reserve is still this stack; only an address beyond either end is another one.
    const bool isOwnStack = here < bounds.high && here + 2 * largestReserve > bounds.low;
    return isOwnStack ? bounds.low : here - assumedRoom;
}

bool OrvStack::hasRoom() { return !isBelow(limit()); }
