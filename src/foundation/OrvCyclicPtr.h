// Pointers to the bodies of a graph: from outside, and from body to body.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "foundation/OrvCountedPtr.h"
#include "foundation/OrvCyclicPtrBody.h"

/// A pointer to a body that is held from outside the graph: by a local, a table, a host.
///
/// Each is a hold on the body's whole group. As a member of a body it would keep the graph alive
/// for ever; there OrvCyclicOperand or OrvCyclicMember stands. Dereferencing an empty pointer
/// throws OrvException with a text that names the operation.
template <class T>
class OrvCyclicPtr {
public:
    OrvCyclicPtr() noexcept = default;
    // NOLINTNEXTLINE(google-explicit-constructor): an empty pointer is written nullptr
    OrvCyclicPtr(std::nullptr_t) noexcept {}
    /// Holds `object`, made with new: at once after that, since nothing else owns it.
    explicit OrvCyclicPtr(T* object) noexcept : object_(object) { hold(); }

    OrvCyclicPtr(const OrvCyclicPtr& other) noexcept : object_(other.object_) { hold(); }
    OrvCyclicPtr(OrvCyclicPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    // NOLINTNEXTLINE(google-explicit-constructor): as with plain pointers, upward
    OrvCyclicPtr(const OrvCyclicPtr<U>& other) noexcept : object_(other.object_) {
        hold();
    }
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    // NOLINTNEXTLINE(google-explicit-constructor): as with plain pointers, upward
    OrvCyclicPtr(OrvCyclicPtr<U>&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)) {}

    ~OrvCyclicPtr() {
        if (object_ != nullptr) {
            object_->release();
        }
    }

    OrvCyclicPtr& operator=(OrvCyclicPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    friend void swap(OrvCyclicPtr& left, OrvCyclicPtr& right) noexcept {
        std::swap(left.object_, right.object_);
    }

    T* get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    T* operator->() const {
        if (object_ == nullptr) {
            throwBadDereference("Null dereference of OrvCyclicPtr<T>::operator->()");
        }
        return object_;
    }
    T& operator*() const {
        if (object_ == nullptr) {
            throwBadDereference("Null dereference of OrvCyclicPtr<T>::operator*() const");
        }
        return *object_;
    }

    friend bool operator==(const OrvCyclicPtr& left, const OrvCyclicPtr& right) noexcept {
        return left.object_ == right.object_;
    }

private:
    template <class U>
    friend class OrvCyclicPtr;
    template <class To, class From>
    friend class OrvConverter;
    template <class U>
    friend class OrvCyclicLoan;

    void hold() const noexcept {
        if (object_ != nullptr) {
            object_->hold();
        }
    }

    T* object_ = nullptr;
};

/// A pointer lent to a call that takes an OrvCyclicPtr: it counts nothing, so that somebody else
/// must hold the body meanwhile. Neither copied nor kept; what the call gives it to is a pointer
/// like any other.
template <class T>
class OrvCyclicLoan {
public:
    explicit OrvCyclicLoan(T* object) noexcept { lent_.object_ = object; }
    OrvCyclicLoan(const OrvCyclicLoan&) = delete;
    OrvCyclicLoan& operator=(const OrvCyclicLoan&) = delete;
    ~OrvCyclicLoan() { lent_.object_ = nullptr; }

    // NOLINTNEXTLINE(google-explicit-constructor): it stands where the pointer is asked for
    operator const OrvCyclicPtr<T>&() const noexcept { return lent_; }

private:
    OrvCyclicPtr<T> lent_;
};

/// A pointer from one body to another, its holder's operand, that is set once: with the holder.
///
/// Making it joins the groups of both bodies and counts nothing; destroying it touches nothing. So
/// it is neither copied nor moved: a holder that is copied makes its members anew. Dereferencing an
/// empty one throws as an OrvCyclicPtr does.
template <class T>
class OrvCyclicOperand {
public:
    OrvCyclicOperand(const OrvCyclicPtrBody& holder, const OrvCyclicPtr<T>& target) noexcept {
        set(holder, target.get());
    }
    OrvCyclicOperand(const OrvCyclicOperand&) = delete;
    OrvCyclicOperand& operator=(const OrvCyclicOperand&) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): a member reads like any pointer to its target
    operator OrvCyclicPtr<T>() const noexcept { return OrvCyclicPtr<T>(target_); }

    T* get() const noexcept { return target_; }
    explicit operator bool() const noexcept { return target_ != nullptr; }
    T* operator->() const { return target_ != nullptr ? target_ : OrvCyclicPtr<T>().operator->(); }
    T& operator*() const { return target_ != nullptr ? *target_ : *OrvCyclicPtr<T>(); }

protected:
    OrvCyclicOperand() = default;

    void set(const OrvCyclicPtrBody& holder, T* target) noexcept {
        if (target != nullptr) {
            holder.join(*target);
        }
        target_ = target;
    }

private:
    T* target_ = nullptr;
};

/// The same where it may be set again and begins empty: it keeps its holder. Lists of members are
/// filled in place in a std::deque.
template <class T>
class OrvCyclicMember : public OrvCyclicOperand<T> {
public:
    explicit OrvCyclicMember(const OrvCyclicPtrBody& holder) noexcept : holder_(holder) {}
    OrvCyclicMember(const OrvCyclicPtrBody& holder, const OrvCyclicPtr<T>& target) noexcept
        : OrvCyclicOperand<T>(holder, target), holder_(holder) {}

    OrvCyclicMember& operator=(const OrvCyclicPtr<T>& target) noexcept {
        this->set(holder_, target.get());
        return *this;
    }

private:
    const OrvCyclicPtrBody& holder_;
};
