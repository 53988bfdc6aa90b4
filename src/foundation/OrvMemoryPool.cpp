// A piece that is kept holds the link to the next one of its size. The lists of a thread stand in
// an object of the heap: a thread-local pointer finds it, a key of the thread library ends it with
// its thread, and a registry ends those of living threads when the library goes.
#include "foundation/OrvMemoryPool.h"

#include <pthread.h>

#include <array>
#include <atomic>
#include <bit>
#include <mutex>
#include <new>
#include <utility>

namespace {

constexpr std::size_t step = 16;
constexpr std::size_t largestSmallSize = 256;
constexpr std::size_t smallLists = largestSmallSize / step + 1;
constexpr std::size_t chunkLists =
    std::bit_width(OrvMemoryPool::largestChunk) - std::bit_width(largestSmallSize);
constexpr std::size_t noList = smallLists + chunkLists;

struct Piece {
    Piece* next;
};

/// The pieces that one thread keeps, by their sizes: small ones in steps, then powers of two. The
/// last list stays empty.
struct ThreadPieces {
    std::array<Piece*, noList + 1> lists{};
    std::size_t bytes = 0;
    ThreadPieces* next = nullptr;  // the ring of all threads
    ThreadPieces* previous = nullptr;
};

std::atomic<std::size_t> limit{OrvMemoryPool::defaultLimit};
// Trivially destructible, so that unloading the library leaves nothing behind in a thread.
thread_local ThreadPieces* threadPieces = nullptr;

std::size_t steps(std::size_t size) { return (size + step - 1) / step; }

// The list for pieces of a size, how large they really are, and the room that there has to be where
// one is kept: the chunks of a long text leave some for those of short ones.
struct SizeClass {
    explicit SizeClass(std::size_t asked) : list(steps(asked)), size(list * step), room(size) {
        if (asked > largestSmallSize) {
            setLarge(asked);
        }
    }

    std::size_t list;
    std::size_t size;
    std::size_t room;

private:
    void setLarge(std::size_t asked) {
        const bool isChunk = (asked & (asked - 1)) == 0 && asked <= OrvMemoryPool::largestChunk;
        list = isChunk ? smallLists + std::bit_width(asked) - std::bit_width(largestSmallSize) - 1
                       : noList;
        size = asked;
        room = 8 * size;
    }
};

void giveBack(ThreadPieces& pieces) noexcept {
    for (Piece*& list : pieces.lists) {
        while (list != nullptr) {
            ::operator delete(std::exchange(list, list->next));
        }
    }
    pieces.bytes = 0;
}

/// All threads that keep something. It ends when the library is unloaded, or with the process.
class Registry {
public:
    Registry() : hasKey_(pthread_key_create(&key_, &Registry::endThread) == 0) {}
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    ~Registry() {
        limit = 0;
        threadPieces = nullptr;
        if (hasKey_) {
            pthread_key_delete(key_);
        }
        while (ring_.next != &ring_) {
            remove(ring_.next);
        }
    }

    static Registry& instance() {
        static Registry registry;
        return registry;
    }

    /// The pieces of a thread that kept nothing before; null where that cannot be.
    ThreadPieces* add() noexcept {
        auto* const pieces = hasKey_ ? new (std::nothrow) ThreadPieces : nullptr;
        if (pieces == nullptr || pthread_setspecific(key_, pieces) != 0) {
            delete pieces;
            return nullptr;
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        pieces->next = ring_.next;
        pieces->previous = &ring_;
        ring_.next->previous = pieces;
        ring_.next = pieces;
        return pieces;
    }

private:
    static void endThread(void* pieces) {
        threadPieces = nullptr;
        Registry& registry = instance();
        const std::lock_guard<std::mutex> lock(registry.mutex_);
        remove(static_cast<ThreadPieces*>(pieces));
    }

    static void remove(ThreadPieces* pieces) noexcept {
        pieces->next->previous = pieces->previous;
        pieces->previous->next = pieces->next;
        giveBack(*pieces);
        delete pieces;
    }

    std::mutex mutex_;
    ThreadPieces ring_{{}, 0, &ring_, &ring_};
    pthread_key_t key_{};
    bool hasKey_;
};

}  // namespace

void* OrvMemoryPool::allocate(std::size_t size) {
    const SizeClass sizeClass(size);
    ThreadPieces* const pieces = threadPieces;
    Piece* const piece = pieces != nullptr ? pieces->lists[sizeClass.list] : nullptr;
    if (piece == nullptr) {
        return ::operator new(sizeClass.size);
    }
    pieces->bytes -= sizeClass.size;
    pieces->lists[sizeClass.list] = piece->next;
    return piece;
}

void OrvMemoryPool::deallocate(void* memory, std::size_t size) noexcept {
    const SizeClass sizeClass(size);
    ThreadPieces* const pieces = threadPieces;
    if (sizeClass.list == noList || memory == nullptr || pieces == nullptr ||
        pieces->bytes + sizeClass.room > limit.load(std::memory_order_relaxed)) {
        deallocateFirst(memory, size);
        return;
    }
    pieces->bytes += sizeClass.size;
    pieces->lists[sizeClass.list] = new (memory) Piece{pieces->lists[sizeClass.list]};
}

// Gives a piece to the system, but keeps the first one of a thread, which then has lists.
void OrvMemoryPool::deallocateFirst(void* memory, std::size_t size) noexcept {
    const bool isFirst = threadPieces == nullptr && keepsAny();
    if (memory == nullptr || SizeClass(size).list == noList || !isFirst) {
        ::operator delete(memory);
        return;
    }
    threadPieces = Registry::instance().add();
    if (threadPieces == nullptr) {
        ::operator delete(memory);
    } else {
        deallocate(memory, size);
    }
}

bool OrvMemoryPool::keepsAny() noexcept { return limit.load(std::memory_order_relaxed) > 0; }

void OrvMemoryPool::setLimit(std::size_t bytes) noexcept {
    limit = bytes;
    if (bytes == 0 && threadPieces != nullptr) {
        giveBack(*threadPieces);
    }
}
