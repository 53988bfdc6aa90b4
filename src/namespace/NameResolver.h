// The look-up of names from a place in the tree.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "namespace/Scope.h"

/// The symbols of one kind that a name means in one scope, in insertion order: a view of the scope,
/// valid until the next insertion there.
class SymbolView {
public:
    SymbolView() = default;
    SymbolView(Scope::Range range, SymbolKind kind)
        : next_(range.first), end_(range.second), kind_(kind) {
        skipOthers();
    }

    bool empty() const { return next_ == end_; }
    /// The first symbol of a view that is not empty.
    const SymbolPtr& front() const { return next_->symbol; }
    /// The view without its first symbol.
    SymbolView rest() const { return SymbolView({next_ + 1, end_}, kind_); }
    /// Whether there is exactly one symbol.
    bool isSingle() const { return !empty() && rest().empty(); }

private:
    void skipOthers() {
        while (next_ != end_ && next_->symbol->getKind() != kind_) {
            ++next_;
        }
    }

    const Scope::Entry* next_ = nullptr;
    const Scope::Entry* end_ = nullptr;
    SymbolKind kind_ = SymbolKind::function;
};

/// Finds what a name means where it is used: all accepted symbols of the nearest scope that has
/// one, in insertion order. Which of several is meant, and that there is one at all, is for the
/// caller to decide. A symbol that the filter refuses hides nothing.
class NameResolver : public OrvCountedObject {
public:
    explicit NameResolver(const ScopePtr& scope) : scope_(scope) {}

    /// Looks through the enclosing scopes. An empty filter accepts every kind; the result is empty
    /// where no scope has such a symbol.
    std::vector<SymbolPtr> resolve(std::string_view name,
                                   const OrvCountedPtr<SymbolFilter>& filter) const;
    /// The same in the resolver's own scope alone.
    std::vector<SymbolPtr> resolveLocal(std::string_view name,
                                        const OrvCountedPtr<SymbolFilter>& filter) const;

    /// What resolve() finds from `scope` on with a filter for one kind, without copying it.
    static SymbolView find(const Scope& scope, std::string_view name, SymbolKind kind);

private:
    ScopePtr scope_;
};

using NameResolverPtr = OrvCountedPtr<NameResolver>;
