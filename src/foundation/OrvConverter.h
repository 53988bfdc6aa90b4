// The checked conversion between pointers to related classes.
#pragma once

#include <type_traits>

#include "foundation/OrvCountedPtr.h"
#include "foundation/OrvCyclicPtr.h"

/// Converts pointers to From into pointers to To, up or down a class hierarchy, and between the
/// two ways in which the bodies of a graph are held.
///
/// The result shares ownership with the source. An object that is not a To gives an empty
/// pointer, as an empty source does. Going from cyclic to counted allocates a count and may throw
/// std::bad_alloc; nothing else fails. A class that knows its kind offers
/// `static bool classof(const From&)` and is told apart by it, other classes by their dynamic
/// type. A class from which others are derived takes a second argument, `std::type_identity` of
/// itself, so that a derived class does not inherit the operation.
template <class To, class From>
class OrvConverter {
public:
    static OrvCountedPtr<To> toCounted(const OrvCountedPtr<From>& source) noexcept {
        To* const object = narrow(source.get());
        return OrvCountedPtr<To>(object != nullptr ? source.block_ : nullptr, object);
    }
    static OrvCountedPtr<To> toCounted(const OrvCyclicPtr<From>& source) {
        return OrvCountedPtr<To>(narrow(source.get()));
    }
    static OrvCyclicPtr<To> toCyclic(const OrvCyclicPtr<From>& source) noexcept {
        return OrvCyclicPtr<To>(narrow(source.get()));
    }
    /// The same, handing the hold over; the source stays as it was where the result is empty.
    static OrvCyclicPtr<To> toCyclic(OrvCyclicPtr<From>&& source) noexcept {
        OrvCyclicPtr<To> result;
        result.object_ = narrow(source.object_);
        if (result.object_ != nullptr) {
            source.object_ = nullptr;
        }
        return result;
    }
    /// The object alone, for as long as the source holds it; null where the others give an empty
    /// pointer.
    static To* toBorrowed(const OrvCyclicPtr<From>& source) noexcept {
        return narrow(source.get());
    }
    static OrvCyclicPtr<To> toCyclic(const OrvCountedPtr<From>& source) noexcept {
        return OrvCyclicPtr<To>(narrow(source.get()));
    }

private:
    static To* narrow(From* object) noexcept {
        if constexpr (std::is_convertible_v<From*, To*>) {
            return object;
        } else if constexpr (requires(const From& from) { To::classof(from); }) {
            return object != nullptr && To::classof(*object) ? static_cast<To*>(object) : nullptr;
        } else if constexpr (requires(const From& from) {
                                 To::classof(from, std::type_identity<To>());
                             }) {
            const bool isTo = object != nullptr && To::classof(*object, std::type_identity<To>());
            return isTo ? static_cast<To*>(object) : nullptr;
        } else {
            return dynamic_cast<To*>(object);
        }
    }
};
