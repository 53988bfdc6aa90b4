// The memory of what one compilation makes, in few large pieces.
#pragma once

#include <cstddef>

/// Memory for many objects of one lifetime, which stand one behind the other in chunks.
///
/// An object keeps a pointer to its region and releases it when it ends; nothing of a region is
/// used again before all of it goes, with its last object. So what is made together stands
/// together, however often memory was taken and given back before, and taking and giving it back
/// are a few instructions. Chunks come from OrvMemoryPool and grow with what is asked for.
/// A region and its objects belong to one thread at a time.
class __attribute__((visibility("default"))) OrvMemoryRegion {
public:
    OrvMemoryRegion(const OrvMemoryRegion&) = delete;
    OrvMemoryRegion& operator=(const OrvMemoryRegion&) = delete;

    /// A region that counts its maker as an object; `firstChunk` is a power of two, in bytes. Of
    /// each object, what stands behind the first `front` bytes is aligned as operator new does.
    /// Throws std::bad_alloc.
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
        ++objects_;
        return memory;
    }
    /// One object less: its own memory is not touched any more. With the last one the region goes.
    void release() noexcept {
        if (--objects_ == 0) {
            giveBack();
        }
    }

private:
    struct Chunk {
        Chunk* next;
        std::size_t size;
    };

    static constexpr std::size_t alignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

    static std::size_t aligned(std::size_t size) {
        return (size + alignment - 1) / alignment * alignment;
    }

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

/// The two regions of a compilation: one for its nodes, scopes and symbols, which go with it, and
/// one for its targets, which go as late as its host wants.
///
/// Made on the stack around a compilation. While it lives, every body that this thread makes comes
/// from its region; of nodes and scopes, those that are made with `new (region)`. Another
/// compilation inside it, by a host's dialogs, has regions of its own. Bodies that a host makes
/// itself while its dialogs are called stand beside those of the compilation, and belong to the
/// same thread as these. Where the pool may keep nothing, every object is an allocation by itself.
class __attribute__((visibility("default"))) OrvCompilationMemory {
public:
    OrvCompilationMemory() noexcept;
    OrvCompilationMemory(const OrvCompilationMemory&) = delete;
    OrvCompilationMemory& operator=(const OrvCompilationMemory&) = delete;
    ~OrvCompilationMemory();

    /// The region of this thread for nodes, or bodies; null outside a compilation. Throws
    /// std::bad_alloc.
    static OrvMemoryRegion* nodes();
    static OrvMemoryRegion* bodies();

    /// Memory for a body, which remembers its region; throws std::bad_alloc.
    static void* allocateBody(std::size_t size);
    /// Gives back what allocateBody() returned for the same size.
    static void deallocateBody(void* body, std::size_t size) noexcept;

private:
    static OrvMemoryRegion* madeRegion(OrvMemoryRegion*& region, std::size_t firstChunk,
                                       std::size_t front);

    OrvCompilationMemory* outer_;
    OrvMemoryRegion* nodes_ = nullptr;
    OrvMemoryRegion* bodies_ = nullptr;
};
