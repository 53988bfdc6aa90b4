// The targets that code generation passes around, and their narrowing to what a place needs.
#pragma once

#include <utility>

#include "foundation/OrvConverter.h"
#include "foundation/OrvCyclicPtr.h"
#include "support/OrvAssertion.h"

/// Any object of the generated graph.
using TargetPtr = OrvCyclicPtr<OrvCyclicPtrBody>;

/// Throws the assertion of a target that is not of the kind that its place needs; never returns.
[[noreturn]] void throwWrongTarget();

/// The target as the kind that its place needs. An operand that is missing or of another kind is
/// never carried on: it is an OrvAssertion.
template <class Target>
OrvCyclicPtr<Target> narrow(const TargetPtr& target) {
    OrvCyclicPtr<Target> narrowed = OrvConverter<Target, OrvCyclicPtrBody>::toCyclic(target);
    if (!narrowed) {
        throwWrongTarget();
    }
    return narrowed;
}

/// The same, lent: for a call, while `target` itself stays where it is.
template <class Target>
OrvCyclicLoan<Target> lend(const TargetPtr& target) {
    Target* const narrowed = OrvConverter<Target, OrvCyclicPtrBody>::toBorrowed(target);
    if (narrowed == nullptr) {
        throwWrongTarget();
    }
    return OrvCyclicLoan<Target>(narrowed);
}

/// The same for a target that is not needed any more.
template <class Target>
OrvCyclicPtr<Target> narrow(TargetPtr&& target) {
    OrvCyclicPtr<Target> narrowed =
        OrvConverter<Target, OrvCyclicPtrBody>::toCyclic(std::move(target));
    if (!narrowed) {
        throwWrongTarget();
    }
    return narrowed;
}
