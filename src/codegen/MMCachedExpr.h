// The interface between a let expression and the binding whose value it caches.
#pragma once

class MMCachedState;

/// A let-bound expression that keeps what it was evaluated to.
///
/// The compiler hands bindings to the let classes as this. It carries no data: constructing and
/// copying only install the interface, assigning copies nothing. A binding belongs to its graph,
/// never to this interface, and cannot be deleted through it.
class __attribute__((visibility("default"))) MMCachedExpr {
public:
    MMCachedExpr() = default;
    MMCachedExpr(const MMCachedExpr& /*other*/) {}
    MMCachedExpr& operator=(const MMCachedExpr& /*other*/) { return *this; }

    /// Exchanges what the binding keeps with `state`. A let puts an empty state in before its body
    /// is evaluated and the former one back afterwards, so that a binding is evaluated at most
    /// once for each evaluation of its let, nested ones included.
    virtual void exchangeState(MMCachedState& state) noexcept = 0;

protected:
    ~MMCachedExpr() = default;
};
