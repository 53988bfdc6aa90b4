// The region stands at the beginning of its first chunk, behind the chunk's own fields, so that a
// compilation of a few objects takes one piece of memory for each of its regions.
#include "foundation/OrvMemoryRegion.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <new>
#include <utility>

#include "foundation/OrvMemoryPool.h"

namespace {

constexpr std::size_t firstNodeChunk = 2048;
constexpr std::size_t firstBodyChunk = 1024;

// Trivially destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCompilationMemory* currentMemory = nullptr;

/// What stands in front of a body: where its memory came from.
struct BodyHeader {
    OrvMemoryRegion* region;  // null where it came from the pool
};
static_assert(sizeof(BodyHeader) == sizeof(void*));  // as allocateBody() counts

/// What stands in front of a body from the pool, which is aligned as the piece.
struct PieceFront {
    std::size_t size;  // of the piece
    BodyHeader header;
};
static_assert(sizeof(PieceFront) % __STDCPP_DEFAULT_NEW_ALIGNMENT__ == 0);

// A body with its header, of so many bytes together, where there is no region yet, or none at all,
// or a chunk is full.
void* allocateSlowly(std::size_t whole) {
    OrvMemoryRegion* const region = OrvCompilationMemory::bodies();
    if (region != nullptr) {
        return new (region->allocate(whole)) BodyHeader{region} + 1;
    }
    const std::size_t size = whole + sizeof(PieceFront) - sizeof(BodyHeader);
    return new (OrvMemoryPool::allocate(size)) PieceFront{size, {nullptr}} + 1;
}

}  // namespace

OrvMemoryRegion::OrvMemoryRegion(Chunk* chunk, std::size_t front)
    : chunks_(chunk),
      front_(front),
      free_(placeFrom(this + 1)),
      end_(reinterpret_cast<char*>(chunk) + chunk->size) {}

OrvMemoryRegion* OrvMemoryRegion::make(std::size_t firstChunk, std::size_t front) {
    auto* const chunk =
        new (OrvMemoryPool::allocate(firstChunk)) Chunk{nullptr, firstChunk, nullptr};
    chunk->region = new (chunk + 1) OrvMemoryRegion(chunk, front);
    return chunk->region;
}

// The first place from `begin` on at which what follows the front of an object is aligned.
char* OrvMemoryRegion::placeFrom(void* begin) const {
    constexpr std::uintptr_t multiple = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
    const std::uintptr_t content = reinterpret_cast<std::uintptr_t>(begin) + front_;
    return static_cast<char*>(begin) + (multiple - content % multiple) % multiple;
}

// Each chunk is twice as large as the one before it, up to the largest that the pool keeps. What is
// larger than that has a chunk of its size, in which no counted object finds room behind it: their
// distances stay small.
void OrvMemoryRegion::addChunk(std::size_t bytes) {
    const std::size_t usual = std::min(chunks_->size * 2, OrvMemoryPool::largestChunk);
    const std::size_t least = sizeof(Chunk) + __STDCPP_DEFAULT_NEW_ALIGNMENT__ + bytes;
    const std::size_t size =
        least > OrvMemoryPool::largestChunk ? least : std::max(usual, std::bit_ceil(least));
    chunks_ = new (OrvMemoryPool::allocate(size)) Chunk{chunks_, size, this};
    free_ = placeFrom(chunks_ + 1);
    end_ = reinterpret_cast<char*>(chunks_) + size;
}

void OrvMemoryRegion::giveBack() noexcept {
    for (Chunk* chunk = chunks_; chunk != nullptr;) {
        Chunk* const doomed = std::exchange(chunk, chunk->next);
        OrvMemoryPool::deallocate(doomed, doomed->size);
    }
}

OrvCompilationMemory::OrvCompilationMemory() noexcept
    : outer_(std::exchange(currentMemory, this)), hasRegions_(OrvMemoryPool::keepsAny()) {}

OrvCompilationMemory::~OrvCompilationMemory() {
    currentMemory = outer_;
    if (nodesEndAtOnce_ && nodes_ != nullptr) {
        std::exchange(nodes_, nullptr)->giveBack();
    }
    for (OrvMemoryRegion* const region : {nodes_, bodies_}) {
        if (region != nullptr) {
            region->release();
        }
    }
}

// The region that is asked for, made when it is asked for first.
OrvMemoryRegion* OrvCompilationMemory::madeRegion(OrvMemoryRegion*& region, std::size_t firstChunk,
                                                  std::size_t front) const {
    if (region == nullptr && hasRegions_) {
        region = OrvMemoryRegion::make(firstChunk, front);
    }
    return region;
}

OrvMemoryRegion* OrvCompilationMemory::nodes() {
    OrvCompilationMemory* const memory = currentMemory;
    return memory != nullptr ? memory->madeRegion(memory->nodes_, firstNodeChunk, 0) : nullptr;
}

OrvMemoryRegion* OrvCompilationMemory::bodies() {
    OrvCompilationMemory* const memory = currentMemory;
    return memory != nullptr
               ? memory->madeRegion(memory->bodies_, firstBodyChunk, sizeof(BodyHeader))
               : nullptr;
}

void* OrvCompilationMemory::allocateWithFront(std::size_t whole) {
    OrvMemoryRegion* const region = currentMemory != nullptr ? currentMemory->bodies_ : nullptr;
    if (region == nullptr || !region->hasRoom(whole)) [[unlikely]] {
        return allocateSlowly(whole);
    }
    return new (region->allocate(whole)) BodyHeader{region} + 1;
}

void OrvCompilationMemory::deallocateBody(void* body) noexcept {
    if (body != nullptr) {
        OrvBodyReturn().add(body);
    }
}

void OrvCompilationMemory::deallocateBodies(void* body, std::size_t count) noexcept {
    (static_cast<BodyHeader*>(body) - 1)->region->release(count);
}

std::size_t OrvCompilationMemory::bodyCount() noexcept {
    const OrvMemoryRegion* const region =
        currentMemory != nullptr ? currentMemory->bodies_ : nullptr;
    return region != nullptr ? region->objects_ - 1 : 0;
}

void OrvBodyReturn::add(void* body) noexcept {
    OrvMemoryRegion* const region = (static_cast<BodyHeader*>(body) - 1)->region;
    if (region == nullptr) {
        PieceFront* const front = static_cast<PieceFront*>(body) - 1;
        OrvMemoryPool::deallocate(front, front->size);
        return;
    }
    if (region != region_) {
        release();
        region_ = region;
        bodies_ = 0;
    }
    ++bodies_;
}
