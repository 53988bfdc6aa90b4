// What the memory pool keeps and gives back.
#include "foundation/OrvMemoryPool.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/OrvCountedPtr.h"
#include "support/AllocationCounter.h"

namespace {

constexpr std::size_t blockSize = 64;
constexpr std::size_t pieces = 100;

/// Has the pool keep so many pieces, and nothing again afterwards.
class Limit {
public:
    explicit Limit(std::size_t kept) { OrvMemoryPool::setLimit(kept * blockSize); }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;
    ~Limit() { OrvMemoryPool::setLimit(0); }
};

std::vector<void*> take() {
    std::vector<void*> taken;
    for (std::size_t i = 0; i < pieces; ++i) {
        taken.push_back(OrvMemoryPool::allocate(blockSize));
    }
    return taken;
}

void giveBack(const std::vector<void*>& taken) {
    for (void* const piece : taken) {
        OrvMemoryPool::deallocate(piece, blockSize);
    }
}

// What this thread has kept of all that it gave back: the pool's own list is one allocation more.
std::ptrdiff_t keptOf(std::size_t limit) {
    const std::vector<void*> taken = take();
    const std::ptrdiff_t before = AllocationCounter::live();
    const Limit limited(limit);
    giveBack(taken);
    return AllocationCounter::live() - before + static_cast<std::ptrdiff_t>(pieces);
}

TEST(MemoryPool, KeepsNoMoreThanItsLimit) {
    EXPECT_EQ(keptOf(0), 0);
    std::thread([] { EXPECT_EQ(keptOf(10), 11); }).join();
    std::thread([] { EXPECT_EQ(keptOf(pieces), static_cast<std::ptrdiff_t>(pieces) + 1); }).join();
}

TEST(MemoryPool, GivesAPieceAgainAndBackWithItsThread) {
    const std::vector<void*> taken = take();
    const Limit limited(pieces);
    const std::ptrdiff_t before = AllocationCounter::live();
    std::thread([&taken] {
        giveBack(taken);  // by a thread that did not take them
        const std::ptrdiff_t kept = AllocationCounter::live();
        void* const again = OrvMemoryPool::allocate(blockSize);
        EXPECT_EQ(again, taken.back());
        EXPECT_EQ(AllocationCounter::live(), kept);
        OrvMemoryPool::deallocate(again, blockSize);
    }).join();
    EXPECT_EQ(AllocationCounter::live(), before - static_cast<std::ptrdiff_t>(pieces));
}

template <std::size_t words>
struct Sized : OrvCountedObject {
    std::array<std::uint64_t, words> content{};
};

// How many allocations an object takes that is made when one of its kind was dropped before.
template <class Object>
std::ptrdiff_t allocationsOfTheSecond() {
    OrvCountedPtr<Object>(new Object);
    const std::ptrdiff_t before = AllocationCounter::live();
    const OrvCountedPtr<Object> second(new Object);
    return AllocationCounter::live() - before;
}

template <std::size_t... words>
std::ptrdiff_t allocationsOfSeconds(std::index_sequence<words...> /*sizes*/) {
    return (allocationsOfTheSecond<Sized<words>>() + ...);
}

// A counted object is given back with the size with which it was taken, and so is a count that
// stands by itself: an int has one, and is an allocation of its own.
TEST(MemoryPool, GivesCountedObjectsAgain) {
    std::thread([] {
        const Limit limited(pieces);
        EXPECT_EQ(allocationsOfSeconds(std::make_index_sequence<28>()), 0);
        EXPECT_EQ(allocationsOfTheSecond<int>(), 1);
    }).join();
}

// However many of the largest chunks come back, smaller ones are kept as well.
TEST(MemoryPool, LeavesRoomForSmallerChunks) {
    std::thread([] {
        constexpr std::size_t small = 2048;
        OrvMemoryPool::setLimit(std::size_t{1} << 20);
        for (int i = 0; i < 100; ++i) {
            OrvMemoryPool::deallocate(::operator new(OrvMemoryPool::largestChunk),
                                      OrvMemoryPool::largestChunk);
        }
        OrvMemoryPool::deallocate(OrvMemoryPool::allocate(small), small);
        const std::ptrdiff_t kept = AllocationCounter::live();
        void* const again = OrvMemoryPool::allocate(small);
        EXPECT_EQ(AllocationCounter::live(), kept);
        OrvMemoryPool::deallocate(again, small);
        OrvMemoryPool::setLimit(0);
    }).join();
}

}  // namespace
