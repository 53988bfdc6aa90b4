#include "foundation/OrvCyclicPtrBody.h"

#include <utility>

namespace {

// Where the sweep that is running on this thread keeps the bodies that wait for deletion, as a
// ring. Trivially destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCyclicPtrBody** pendingBodies = nullptr;

}  // namespace

void OrvCyclicPtrBody::anchor() const {}

OrvCyclicPtrBody::OrvCyclicPtrBody(const OrvCyclicPtrBody& other) noexcept : OrvCyclicPtrBody() {
    kinds_ = other.kinds_;
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): there is nothing to copy
OrvCyclicPtrBody& OrvCyclicPtrBody::operator=(const OrvCyclicPtrBody& /*other*/) noexcept {
    return *this;
}

// Of two groups of equal size the holder's goes below the target's: a body that joins groups in
// its constructor and then throws is a leaf of the forest, and leaves without a trace.
void OrvCyclicPtrBody::joinGroups(OrvCyclicPtrBody& targetGroup) const noexcept {
    OrvCyclicPtrBody* upper = &targetGroup;
    OrvCyclicPtrBody* lower = root();
    if (upper == lower) {
        return;
    }
    if (lower->size_ > upper->size_) {
        std::swap(upper, lower);
    }
    lower->parent_ = upper;
    upper->holds_ += lower->holds_;
    upper->size_ += lower->size_;
    upper->hasOwners_ = upper->hasOwners_ || lower->hasOwners_;
    upper->isInOneRegion_ = false;
    std::swap(upper->next_, lower->next_);
    if (this != upper) {
        parent_ = upper;
    }
}

// Every body becomes a group of its own, held by the sweep, before the first is deleted: nothing
// that a destructor does to a pointer reaches a body that is gone, or begins a second deletion. A
// sweep that begins inside another one only adds its ring to the bodies that wait.
void OrvCyclicPtrBody::sweep() const noexcept {
    if (!hasOwners_) {
        giveBackAll();
        return;
    }
    OrvCyclicPtrBody* body = next_;
    do {
        body->parent_ = body;
        body->holds_ = 1;
        body = body->next_;
    } while (body != next_);
    if (pendingBodies != nullptr) {
        addPending(*pendingBodies, next_);
        return;
    }
    OrvCyclicPtrBody* pending = next_;
    pendingBodies = &pending;
    OrvBodyReturn memory;
    while (pending != nullptr) {
        OrvCyclicPtrBody* const doomed = pending->next_;
        if (doomed == pending) {
            pending = nullptr;
        } else {
            pending->next_ = doomed->next_;
            doomed->next_ = doomed;
        }
        if (doomed->isOwner_) {
            delete doomed;
        } else {
            memory.add(doomed->place());
        }
    }
    pendingBodies = nullptr;
}

// Of a group in which no destructor has anything to do.
void OrvCyclicPtrBody::giveBackAll() const noexcept {
    if (isInOneRegion_) {
        OrvCompilationMemory::deallocateBodies(place(), size_);
        return;
    }
    OrvBodyReturn memory;
    for (const OrvCyclicPtrBody* body = next_; body != this;) {
        memory.add(std::exchange(body, body->next_)->place());
    }
    memory.add(place());
}

// Where the memory begins: with the whole object.
void* OrvCyclicPtrBody::place() const noexcept {
    return dynamic_cast<void*>(const_cast<OrvCyclicPtrBody*>(this));
}

// Makes one ring of two, of which the first may be empty.
void OrvCyclicPtrBody::addPending(OrvCyclicPtrBody*& pending, OrvCyclicPtrBody* ring) noexcept {
    if (pending == nullptr) {
        pending = ring;
    } else {
        std::swap(pending->next_, ring->next_);
    }
}

// Reached only by a body that is deleted while others of its group live on: one whose constructor
// threw, or one that was not made with new. The others keep their holds.
void OrvCyclicPtrBody::leaveGroup() noexcept {
    OrvCyclicPtrBody* const group = root();
    OrvCyclicPtrBody* const heir = group == this ? next_ : group;
    heir->holds_ = group->holds_;
    heir->size_ = group->size_ - 1;
    heir->hasOwners_ = group->hasOwners_;
    heir->isInOneRegion_ = false;
    OrvCyclicPtrBody* last = this;
    while (last->next_ != this) {
        last = last->next_;
        last->parent_ = heir;
    }
    last->next_ = next_;
}
