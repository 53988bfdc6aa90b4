// Single ownership, for plain objects and for the parts of a graph.
#pragma once

#include <type_traits>
#include <utility>

#include "foundation/OrvCountedPtr.h"
#include "foundation/OrvCyclicPtrBody.h"

/// Throws the assertion that a body was claimed by a second owner; never returns.
[[noreturn]] __attribute__((visibility("default"))) void throwClaimedTwice();

/// The one owner of an object.
///
/// A plain object is deleted with its owner. A body of a graph is held like by any outside
/// pointer, until the owner is moved into a body: that claims it (becomeOwned()) and joins both
/// groups, and the graph as a whole owns it from then on. The pointer remembers how to end what
/// it was given, so that T may be an interface without a virtual destructor.
/// Dereferencing an empty pointer throws OrvException "Null dereference".
template <class T>
class OrvSimplePtr {
public:
    OrvSimplePtr() noexcept = default;

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    explicit OrvSimplePtr(U* object) noexcept
        : object_(object), owned_(object), dispose_(&disposeOwned<U>), body_(bodyOf(object)) {
        if (body_ != nullptr) {
            body_->hold();
        }
    }

    OrvSimplePtr(OrvSimplePtr&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)),
          owned_(std::exchange(other.owned_, nullptr)),
          dispose_(other.dispose_),
          body_(std::exchange(other.body_, nullptr)) {}

    /// Moves `other` into `holder`, of which this pointer is a member. Throws OrvAssertion, and
    /// leaves everything as it was, if the object is a body that has an owner already. It is the
    /// last thing in the holder's construction that may throw: a body that was claimed is held
    /// by the holder alone.
    OrvSimplePtr(const OrvCyclicPtrBody& holder, OrvSimplePtr&& other) {
        if (other.body_ != nullptr) {
            other.claimFor(holder);
        }
        *this = std::move(other);
    }

    OrvSimplePtr(const OrvSimplePtr&) = delete;
    ~OrvSimplePtr() { reset(); }

    OrvSimplePtr& operator=(OrvSimplePtr&& other) noexcept {
        if (this != &other) {
            reset();
            object_ = std::exchange(other.object_, nullptr);
            owned_ = std::exchange(other.owned_, nullptr);
            dispose_ = other.dispose_;
            body_ = std::exchange(other.body_, nullptr);
        }
        return *this;
    }

    T* get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    T* operator->() const { return checked(); }
    T& operator*() const { return *checked(); }

private:
    template <class U>
    static const OrvCyclicPtrBody* bodyOf(U* object) noexcept {
        if constexpr (std::is_base_of_v<OrvCyclicPtrBody, U>) {
            return object;
        } else {
            return nullptr;
        }
    }

    // From here on the graph owns the body: there is nothing left to dispose of.
    void claimFor(const OrvCyclicPtrBody& holder) {
        if (body_->isOwned()) {
            throwClaimedTwice();
        }
        body_->becomeOwned();
        holder.join(*body_);
        body_->surrender();
        owned_ = nullptr;
        body_ = nullptr;
    }

    void reset() noexcept {
        if (owned_ != nullptr) {
            dispose_(std::exchange(owned_, nullptr));
        }
        object_ = nullptr;
        body_ = nullptr;
    }

    T* checked() const {
        if (object_ == nullptr) {
            throwBadDereference("Null dereference");
        }
        return object_;
    }

    T* object_ = nullptr;
    void* owned_ = nullptr;
    void (*dispose_)(void*) noexcept = nullptr;
    const OrvCyclicPtrBody* body_ = nullptr;
};
