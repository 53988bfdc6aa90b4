// Shared ownership by a plain count.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

#include "foundation/OrvCyclicPtrBody.h"
#include "foundation/OrvMemoryPool.h"
#include "foundation/OrvMemoryRegion.h"

template <class To, class From>
class OrvConverter;

/// The count of a shared object together with what is needed to give back its memory.
///
/// It stands in front of an OrvCountedObject, with which it is made, and by itself for any other
/// object, where the first OrvCountedPtr makes it (OrvSeparateCountedBlock); copies of a pointer
/// share it. Its memory is a piece of the pool, or a part of a region. A count of all ones belongs
/// to an object that the whole process shares (OrvPinnedRegistry): it is never written, so any
/// number of threads may copy such pointers.
struct __attribute__((visibility("default"))) OrvCountedBlock {
    static constexpr std::uint32_t pinned = 0xFFFFFFFFU;
    /// The origin of a block that stands by itself.
    static constexpr std::uint32_t separate = 0;

    /// Where the memory of a block and the object behind it came from: even, the size of a piece of
    /// the pool; odd, the distance of a part of a region from the beginning of its chunk.
    static std::uint32_t originInPool(std::size_t size) {
        return static_cast<std::uint32_t>(size / step * 2);
    }
    static std::uint32_t originInRegion(const OrvMemoryRegion& region, const void* memory) {
        return static_cast<std::uint32_t>(region.distanceOf(memory) / (step / 2) + 1);
    }

    explicit OrvCountedBlock(std::uint32_t itsOrigin) noexcept : origin(itsOrigin) {}

    bool isInRegion() const noexcept { return origin % 2 != 0; }

    void hold() noexcept {
        if (count != pinned) {
            ++count;
        }
    }
    void release() noexcept {
        if (count != pinned && --count == 0) {
            end();
        }
    }

    /// Ends the object behind this block, or the one for which it stands by itself.
    void endObject() noexcept;
    /// Frees the memory that begins with this block; the object has ended before.
    void free() noexcept;

    std::uint32_t count = 1;
    std::uint32_t origin;
    OrvCountedBlock* next;  // of objects that wait for their end, and of pinned ones; else not set

private:
    static constexpr std::size_t step = OrvMemoryRegion::alignment;  // of sizes and distances

    /// Ends the object and frees the block. Objects whose last pointer goes while another object
    /// is ended wait in a list through the blocks, so that a chain of any length neither recurses
    /// nor allocates.
    void end() noexcept;
    void endWithAllThatFollow() noexcept;
};

/// The base of objects that are shared by counted pointers alone and are many: the count stands in
/// front of the object, in one piece of memory with it.
///
/// Such an object is made with new and handed at once to one OrvCountedPtr. This is the first base
/// of its class, which asks for no more than eight bytes of alignment.
class __attribute__((visibility("default"))) OrvCountedObject {
public:
    static void* operator new(std::size_t bytes) { return allocate(bytes, nullptr); }
    /// Memory of a region, for what is made for one compilation; or of the pool where it is null.
    static void* operator new(std::size_t bytes, OrvMemoryRegion* region) {
        return allocate(bytes, region);
    }
    /// For an object that never had a pointer, or whose constructor threw.
    static void operator delete(void* object) noexcept { blockOf(object)->free(); }
    static void operator delete(void* object, OrvMemoryRegion* /*region*/) noexcept {
        blockOf(object)->free();
    }

    /// The block in front of an object.
    static OrvCountedBlock* blockOf(void* object) noexcept {
        return static_cast<OrvCountedBlock*>(object) - 1;
    }

protected:
    OrvCountedObject() = default;
    OrvCountedObject(const OrvCountedObject&) = default;
    OrvCountedObject& operator=(const OrvCountedObject&) = default;
    virtual ~OrvCountedObject() = default;

private:
    friend struct OrvCountedBlock;

    virtual void anchor() const;  // as in OrvObject

    static void* allocate(std::size_t bytes, OrvMemoryRegion* region) {
        const std::size_t size = sizeof(OrvCountedBlock) + bytes;
        void* const memory =
            region != nullptr ? region->allocate(size) : OrvMemoryPool::allocate(size);
        auto* const block = new (memory)
            OrvCountedBlock(region != nullptr ? OrvCountedBlock::originInRegion(*region, memory)
                                              : OrvCountedBlock::originInPool(size));
        return block + 1;
    }
};

/// The block of an object that has none in front of it, and how that is ended.
struct OrvSeparateCountedBlock : OrvCountedBlock {
    OrvSeparateCountedBlock(void* itsObject, void (*disposal)(void*) noexcept) noexcept
        : OrvCountedBlock(separate), object(itsObject), dispose(disposal) {}

    void* object;
    void (*dispose)(void* object) noexcept;
};

/// A shared pointer: the object goes with the last copy.
///
/// A body of a graph (OrvCyclicPtrBody) is not deleted by itself: the last copy takes back one
/// hold on its group. A pointer may be copied and destroyed where T is incomplete. Counts are not
/// atomic: an object and its pointers belong to one thread, unless they are pinned.
/// Dereferencing an empty pointer throws OrvException "Bad dereference".
template <class T>
class OrvCountedPtr {
public:
    OrvCountedPtr() noexcept = default;
    // NOLINTNEXTLINE(google-explicit-constructor): an empty pointer is written nullptr
    OrvCountedPtr(std::nullptr_t) noexcept {}

    /// Takes over `object`, made with new; where the count cannot be allocated, deletes it and
    /// throws std::bad_alloc.
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    explicit OrvCountedPtr(U* object) : block_(makeBlock(object)), object_(object) {}

    OrvCountedPtr(const OrvCountedPtr& other) noexcept
        : OrvCountedPtr(other.block_, other.object_) {}
    OrvCountedPtr(OrvCountedPtr&& other) noexcept
        : block_(std::exchange(other.block_, nullptr)),
          object_(std::exchange(other.object_, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    // NOLINTNEXTLINE(google-explicit-constructor): as with plain pointers, upward
    OrvCountedPtr(const OrvCountedPtr<U>& other) noexcept
        : OrvCountedPtr(other.block_, other.object_) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    // NOLINTNEXTLINE(google-explicit-constructor): as with plain pointers, upward
    OrvCountedPtr(OrvCountedPtr<U>&& other) noexcept
        : block_(std::exchange(other.block_, nullptr)),
          object_(std::exchange(other.object_, nullptr)) {}

    ~OrvCountedPtr() {
        if (block_ != nullptr) {
            block_->release();
        }
    }

    OrvCountedPtr& operator=(OrvCountedPtr other) noexcept {
        std::swap(block_, other.block_);
        std::swap(object_, other.object_);
        return *this;
    }

    /// Lets go of an object that stands in a region, and ends nothing: that is left to the region
    /// (OrvCompilationMemory::endNodesAtOnce()). Returns false, and does nothing, where the object
    /// stands elsewhere.
    bool abandonInRegion() noexcept {
        const bool isInRegion = block_ != nullptr && block_->isInRegion();
        if (isInRegion) {
            block_ = nullptr;
            object_ = nullptr;
        }
        return isInRegion;
    }

    T* get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    T* operator->() const { return checked(); }
    T& operator*() const { return *checked(); }

    friend bool operator==(const OrvCountedPtr& left, const OrvCountedPtr& right) noexcept {
        return left.object_ == right.object_;
    }

private:
    template <class U>
    friend class OrvCountedPtr;
    template <class To, class From>
    friend class OrvConverter;
    friend class OrvPinnedRegistry;

    OrvCountedPtr(OrvCountedBlock* block, T* object) noexcept : block_(block), object_(object) {
        if (block_ != nullptr) {
            block_->hold();
        }
    }

    template <class U>
    static OrvCountedBlock* makeBlock(U* object);

    T* checked() const;

    OrvCountedBlock* block_ = nullptr;
    T* object_ = nullptr;
};

/// Throws the exception of a bad dereference with this text; never returns.
[[noreturn]] __attribute__((visibility("default"))) void throwBadDereference(const char* text);

template <class T>
T* OrvCountedPtr<T>::checked() const {
    if (object_ == nullptr) {
        throwBadDereference("Bad dereference");
    }
    return object_;
}

/// Ends an object that lost its owner: deletes it, or takes back a hold on its group.
template <class T>
void disposeOwned(void* object) noexcept {
    if constexpr (std::is_base_of_v<OrvCyclicPtrBody, T>) {
        static_cast<T*>(object)->release();
    } else {
        delete static_cast<T*>(object);
    }
}

/// Begins the ownership of an object: a body is held, anything else needs nothing.
template <class T>
void beginOwned(T* object) noexcept {
    if constexpr (std::is_base_of_v<OrvCyclicPtrBody, T>) {
        object->hold();
    }
}

/// A block of its own for an object; where it cannot be had, the object is ended.
template <class T>
OrvCountedBlock* makeSeparateBlock(T* object) {
    beginOwned(object);
    try {
        void* const memory = OrvMemoryPool::allocate(sizeof(OrvSeparateCountedBlock));
        return new (memory) OrvSeparateCountedBlock(object, &disposeOwned<T>);
    } catch (...) {
        disposeOwned<T>(object);
        throw;
    }
}

template <class T>
template <class U>
OrvCountedBlock* OrvCountedPtr<T>::makeBlock(U* object) {
    using Object = std::remove_const_t<U>;
    if (object == nullptr) {
        return nullptr;
    }
    Object* const owned = const_cast<Object*>(object);
    if constexpr (std::is_base_of_v<OrvCountedObject, Object>) {
        static_assert(alignof(Object) <= alignof(OrvCountedBlock));
        return OrvCountedObject::blockOf(owned);
    } else {
        return makeSeparateBlock(owned);
    }
}
