// The memory of what one compilation makes, in few large pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/OrvMemoryPool.h"

/// Memory for many objects of one lifetime, which stand one behind the other in chunks.
///
/// An object knows its region, or its distance from the beginning of its chunk, which knows the
/// region, and releases that when it ends; nothing of a region is used again before all of it goes,
/// with its last object. So what is made together stands together, however often memory was taken
/// and given back before, and taking and giving it back are a few instructions. Chunks come from
/// OrvMemoryPool and grow with what is asked for. A region and its objects belong to one thread at
/// a time.
class __attribute__((visibility("default"))) OrvMemoryRegion {
public:
    OrvMemoryRegion(const OrvMemoryRegion&) = delete;
    OrvMemoryRegion& operator=(const OrvMemoryRegion&) = delete;

    /// How objects are aligned, in bytes.
    static constexpr std::size_t alignment = sizeof(std::uint64_t);

    /// A region that counts its maker as an object; `firstChunk` is a power of two, in bytes. While
    /// the sizes of all objects are multiples of what operator new aligns to, what stands behind
    /// the first `front` bytes of each is aligned as that does. Throws std::bad_alloc.
    static OrvMemoryRegion* make(std::size_t firstChunk, std::size_t front);

    /// Whether one object more needs no further chunk.
    bool hasRoom(std::size_t size) const {
        return aligned(size) <= static_cast<std::size_t>(end_ - free_);
    }
    /// Memory for one object more; throws std::bad_alloc.
    void* allocate(std::size_t size) {
        const std::size_t bytes = aligned(size);
        if (!hasRoom(size)) {
            addChunk(bytes);
        }
        void* const memory = free_;
        free_ += bytes;
        prefetch();
        ++objects_;
        return memory;
    }
    /// How far what was allocated last stands from the beginning of its chunk, a multiple of the
    /// alignment; and the region of what stands so far from there.
    std::size_t distanceOf(const void* memory) const {
        return static_cast<std::size_t>(static_cast<const char*>(memory) -
                                        reinterpret_cast<const char*>(chunks_));
    }
    static OrvMemoryRegion* regionOf(const void* memory, std::size_t distance) {
        return reinterpret_cast<const Chunk*>(static_cast<const char*>(memory) - distance)->region;
    }
    /// Bytes that go with the region and are not released by themselves, where nobody minds how
    /// they are aligned: from the end of a chunk. Throws std::bad_alloc.
    char* allocateBytes(std::size_t size) {
        if (size > static_cast<std::size_t>(end_ - free_)) {
            addChunk(aligned(size));
        }
        end_ -= size;
        return end_;
    }
    /// Some objects less: their own memory is not touched any more. With the last one the region
    /// goes.
    void release(std::size_t objects = 1) noexcept {
        objects_ -= objects;
        if (objects_ == 0) {
            giveBack();
        }
    }

private:
    struct Chunk {
        Chunk* next;
        std::size_t size;
        OrvMemoryRegion* region;
    };

    static std::size_t aligned(std::size_t size) {
        return (size + alignment - 1) / alignment * alignment;
    }

    // Objects are written as they are taken: what comes soon is brought into the cache meanwhile.
    void prefetch() const {
        constexpr std::uintptr_t ahead = 512;
        const auto place = reinterpret_cast<std::uintptr_t>(free_) + ahead;
        __builtin_prefetch(reinterpret_cast<const void*>(place), 1);
    }

    friend class OrvCompilationMemory;

    OrvMemoryRegion(Chunk* chunk, std::size_t front);
    char* placeFrom(void* begin) const;
    void addChunk(std::size_t bytes);
    void giveBack() noexcept;

    Chunk* chunks_;  // the newest one first; the region stands in the oldest one
    std::size_t front_;
    char* free_;
    char* end_;
    std::size_t objects_ = 1;
};

/// The allocator of containers that are members of an object of a region, or of one that stands by
/// itself: then the region is null, and their memory the pool's.
template <class T>
struct OrvRegionAllocator {
    using value_type = T;
    static constexpr std::size_t elementSize = OrvPoolAllocator<T>::elementSize;

    explicit OrvRegionAllocator(OrvMemoryRegion* memory = nullptr) noexcept : region(memory) {}
    template <class U>
    // NOLINTNEXTLINE(google-explicit-constructor): containers convert their allocators
    OrvRegionAllocator(const OrvRegionAllocator<U>& other) noexcept : region(other.region) {}

    T* allocate(std::size_t count) {
        static_assert(alignof(T) <= OrvMemoryRegion::alignment);
        const std::size_t mostElements = std::numeric_limits<std::size_t>::max() / elementSize;
        return region != nullptr && count <= mostElements
                   ? static_cast<T*>(region->allocate(count * elementSize))
                   : OrvPoolAllocator<T>().allocate(count);
    }
    void deallocate(T* memory, std::size_t count) noexcept {
        if (region != nullptr) {
            region->release();
        } else {
            OrvPoolAllocator<T>().deallocate(memory, count);
        }
    }

    friend bool operator==(const OrvRegionAllocator& left,
                           const OrvRegionAllocator& right) = default;

    OrvMemoryRegion* region;
};

template <class T>
using OrvRegionVector = std::vector<T, OrvRegionAllocator<T>>;

/// The two regions of a compilation: one for its nodes, scopes and symbols, which go with it, and
/// one for its targets, which go as late as its host wants.
///
/// Made on the stack around a compilation. While it lives, every body that this thread makes comes
/// from its region; of nodes and scopes, those that are made with `new (region)`. Another
/// compilation inside it, by a host's dialogs, has regions of its own. Bodies that a host makes
/// itself while its dialogs are called stand beside those of the compilation, and belong to the
/// same thread as these. Where the pool may keep nothing when it begins, every object is an
/// allocation by itself.
class __attribute__((visibility("default"))) OrvCompilationMemory {
public:
    OrvCompilationMemory() noexcept;
    OrvCompilationMemory(const OrvCompilationMemory&) = delete;
    OrvCompilationMemory& operator=(const OrvCompilationMemory&) = delete;
    ~OrvCompilationMemory();

    /// Has the region of nodes end as a whole with this object, without a walk over its objects:
    /// for when nobody looks at one of them any more, and none of them owns anything elsewhere.
    void endNodesAtOnce() noexcept { nodesEndAtOnce_ = true; }

    /// The region of this thread for nodes, or bodies; null outside a compilation. Throws
    /// std::bad_alloc.
    static OrvMemoryRegion* nodes();
    static OrvMemoryRegion* bodies();

    /// Memory for a body, which remembers its region; throws std::bad_alloc.
    static void* allocateBody(std::size_t size) { return allocateWithFront(sizeWithFront(size)); }
    /// Gives back what allocateBody() returned; null is nothing.
    static void deallocateBody(void* body) noexcept;
    /// The same for so many bodies at once that stand in the region of this one.
    static void deallocateBodies(void* body, std::size_t count) noexcept;
    /// How many bodies stand in the region of this thread; none outside a compilation.
    static std::size_t bodyCount() noexcept;

private:
    // What a body takes with the pointer in front of it. All bodies take multiples of what operator
    // new aligns to, so that each stands as that would have it.
    static constexpr std::size_t sizeWithFront(std::size_t size) {
        constexpr std::size_t multiple = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
        return (sizeof(void*) + size + multiple - 1) / multiple * multiple;
    }
    static void* allocateWithFront(std::size_t whole);

    OrvMemoryRegion* madeRegion(OrvMemoryRegion*& region, std::size_t firstChunk,
                                std::size_t front) const;

    OrvCompilationMemory* outer_;
    OrvMemoryRegion* nodes_ = nullptr;
    OrvMemoryRegion* bodies_ = nullptr;
    bool hasRegions_;  // whether the pool kept anything when the compilation began
    bool nodesEndAtOnce_ = false;
};

/// Gives back the memory of bodies one after the other: where they stand in one region, as most
/// do, once for all of them. Made on the stack.
class OrvBodyReturn {
public:
    OrvBodyReturn() = default;
    OrvBodyReturn(const OrvBodyReturn&) = delete;
    OrvBodyReturn& operator=(const OrvBodyReturn&) = delete;
    ~OrvBodyReturn() { release(); }

    /// The memory of a body, as allocateBody() returned it.
    void add(void* body) noexcept;

private:
    void release() noexcept {
        if (region_ != nullptr) {
            region_->release(bodies_);
        }
    }

    OrvMemoryRegion* region_ = nullptr;  // of the bodies that were added last
    std::size_t bodies_ = 0;
};
