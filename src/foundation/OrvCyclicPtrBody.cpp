#include "foundation/OrvCyclicPtrBody.h"

#include <utility>

namespace {

// Bodies that wait for deletion on this thread, as a ring, while a sweep is running. Trivially
// destructible, so that unloading the library leaves nothing behind in a thread.
thread_local OrvCyclicPtrBody* pendingBodies = nullptr;
thread_local bool isSweeping = false;

}  // namespace

OrvCyclicPtrBody::OrvCyclicPtrBody(const OrvCyclicPtrBody& other) noexcept
    : parent_(this), next_(this), kinds_(other.kinds_) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): there is nothing to copy
OrvCyclicPtrBody& OrvCyclicPtrBody::operator=(const OrvCyclicPtrBody& /*other*/) noexcept {
    return *this;
}

OrvCyclicPtrBody::~OrvCyclicPtrBody() {
    if (next_ != this) {
        leaveGroup();
    }
}

// Of two groups of equal size the holder's goes below the target's: a body that joins groups in
// its constructor and then throws is a leaf of the forest, and leaves without a trace.
void OrvCyclicPtrBody::join(const OrvCyclicPtrBody& target) const noexcept {
    OrvCyclicPtrBody* upper = target.root();
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
    std::swap(upper->next_, lower->next_);
}

// Every body becomes a group of its own, held for ever, before the first is deleted: nothing that
// a destructor does to a pointer reaches a body that is gone. A sweep that begins inside another
// one only adds its ring to the bodies that wait.
void OrvCyclicPtrBody::sweep() const noexcept {
    OrvCyclicPtrBody* body = next_;
    do {
        body->parent_ = body;
        body->holds_ = heldForEver;
        body = body->next_;
    } while (body != next_);
    if (pendingBodies != nullptr) {
        std::swap(pendingBodies->next_, next_);
        return;
    }
    pendingBodies = next_;
    if (isSweeping) {
        return;
    }
    isSweeping = true;
    while (pendingBodies != nullptr) {
        OrvCyclicPtrBody* const doomed = pendingBodies->next_;
        if (doomed == pendingBodies) {
            pendingBodies = nullptr;
        } else {
            pendingBodies->next_ = doomed->next_;
            doomed->next_ = doomed;
        }
        delete doomed;
    }
    isSweeping = false;
}

// Reached only by a body that is deleted while others of its group live on: one whose constructor
// threw, or one that was not made with new. The others keep their holds.
void OrvCyclicPtrBody::leaveGroup() noexcept {
    OrvCyclicPtrBody* const group = root();
    OrvCyclicPtrBody* const heir = group == this ? next_ : group;
    heir->holds_ = group->holds_;
    heir->size_ = group->size_ - 1;
    OrvCyclicPtrBody* last = this;
    while (last->next_ != this) {
        last = last->next_;
        last->parent_ = heir;
    }
    last->next_ = next_;
}
