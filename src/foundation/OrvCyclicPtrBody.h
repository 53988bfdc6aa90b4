// The base of objects that form graphs with cycles, and the groups in which such objects live.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/OrvMemoryRegion.h"

/// A member of a graph that lives and dies as a whole: every target expression is one.
///
/// Bodies that refer to each other belong to one group. Every OrvCyclicPtr, OrvCountedPtr or
/// OrvSimplePtr held outside the graph is a hold on its body's whole group; a pointer that is a
/// member of a body (OrvCyclicOperand, OrvCyclicMember) joins the two groups and holds nothing.
/// When the last hold goes, every body of the group is deleted, in one loop without recursion or
/// allocation. So cycles are freed like trees, at any depth. While a group is swept, a destructor
/// must not look at other bodies of its group; where a body says that its destructor has nothing to
/// do, it does not run.
///
/// Groups are a union-find forest over private fields, and a ring of the bodies of each group:
/// making, copying and dropping pointers never allocates and never throws. Groups never split.
/// Nothing here is atomic: a group belongs to one thread at a time.
class __attribute__((visibility("default"))) OrvCyclicPtrBody {
public:
    /// Whether an owner (the let of a binding) has claimed this body.
    bool isOwned() const { return owned_; }
    /// Marks the body as claimed; a constant operation, since it does not change its meaning.
    void becomeOwned() const { owned_ = true; }

    /// Of which kinds the body is, a bit for each: what they mean is for the hierarchy of classes
    /// to say. OrvConverter tells classes apart by them, where they offer it.
    std::uint16_t getBodyKinds() const { return kinds_; }

    /// Adds a hold on the group.
    void hold() const noexcept { ++root()->holds_; }
    /// Takes a hold back; the last one deletes the group.
    void release() const noexcept {
        OrvCyclicPtrBody* const group = root();
        if (--group->holds_ == 0) {
            group->sweep();
        }
    }
    /// Takes a hold back without looking whether it was the last one: for handing a body over to
    /// a holder that is still under construction and is held only afterwards.
    void surrender() const noexcept { --root()->holds_; }
    /// Joins the group of `target` with this body's.
    void join(const OrvCyclicPtrBody& target) const noexcept {
        if (next_ != this && target.next_ == &target) {
            target.enter(*root());
            return;
        }
        OrvCyclicPtrBody* const group = target.root();
        if (parent_ == group) {
            return;
        }
        if (next_ == this) {
            enter(*group);
        } else {
            joinGroups(*group);
        }
    }
    /// True when both bodies live in one group.
    bool isJoinedWith(const OrvCyclicPtrBody& other) const noexcept {
        return root() == other.root();
    }

    /// Called when a compilation has made and joined the last body of the group, of which all were
    /// made in it, before its memory ends: if that has a region, the group stands in it and is
    /// given back at once, without a walk over its bodies, unless it is joined with others later.
    void settle() const noexcept {
        OrvCyclicPtrBody* const group = root();
        group->isInOneRegion_ = group->size_ <= OrvCompilationMemory::bodyCount();
    }

    static void* operator new(std::size_t size) { return OrvCompilationMemory::allocateBody(size); }
    static void operator delete(void* body) noexcept { OrvCompilationMemory::deallocateBody(body); }

protected:
    /// What there is for a destructor to do: nothing in an object of a final class that owns no
    /// memory or anything else. Of such a body the memory alone is given back.
    enum class Ownership : bool { nothing, something };

    explicit OrvCyclicPtrBody(Ownership ownership = Ownership::something) noexcept
        : parent_(this),
          next_(this),
          isOwner_(ownership == Ownership::something),
          hasOwners_(isOwner_) {}
    /// A copy is a new body, alone in its group, unclaimed.
    OrvCyclicPtrBody(const OrvCyclicPtrBody& other) noexcept;
    /// Changes nothing: groups and claims are an object's own.
    OrvCyclicPtrBody& operator=(const OrvCyclicPtrBody& other) noexcept;
    virtual ~OrvCyclicPtrBody() {
        if (next_ != this) {
            leaveGroup();
        }
    }

    /// From here on there is something for the destructor to do.
    void becomeOwner() const noexcept {
        isOwner_ = true;
        root()->hasOwners_ = true;
    }

    /// Adds kinds; for the constructors of the classes that these stand for.
    void addBodyKinds(std::uint16_t kinds) { kinds_ = static_cast<std::uint16_t>(kinds_ | kinds); }

private:
    OrvCyclicPtrBody* root() const noexcept {
        OrvCyclicPtrBody* body = parent_;
        while (body->parent_ != body) {
            body->parent_ = body->parent_->parent_;
            body = body->parent_;
        }
        return body;
    }
    // What most bodies do, once: a body that is alone goes below the root of a group.
    void enter(OrvCyclicPtrBody& group) const noexcept {
        auto* const self = const_cast<OrvCyclicPtrBody*>(this);
        parent_ = &group;
        next_ = group.next_;
        group.next_ = self;
        group.holds_ += holds_;
        ++group.size_;
        group.hasOwners_ = group.hasOwners_ || hasOwners_;
        group.isInOneRegion_ = false;
    }
    virtual void anchor() const;  // as in OrvObject
    void joinGroups(OrvCyclicPtrBody& targetGroup) const noexcept;
    void sweep() const noexcept;
    void giveBackAll() const noexcept;
    void* place() const noexcept;
    static void addPending(OrvCyclicPtrBody*& pending, OrvCyclicPtrBody* ring) noexcept;
    void leaveGroup() noexcept;

    mutable OrvCyclicPtrBody* parent_;  // itself in a root
    mutable OrvCyclicPtrBody* next_;    // the ring of the group
    mutable std::uint32_t holds_ = 0;   // of the whole group; valid in a root
    mutable std::uint32_t size_ = 1;    // of the whole group; valid in a root
    mutable bool owned_ = false;
    mutable bool isOwner_;
    mutable bool hasOwners_;              // in the whole group; valid in a root
    mutable bool isInOneRegion_ = false;  // the whole group, for certain; valid in a root
    std::uint16_t kinds_ = 0;
};
