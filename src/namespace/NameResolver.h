// The look-up of names from a place in the tree.
#pragma once

#include <string_view>
#include <vector>

#include "namespace/Scope.h"

/// Finds what a name means where it is used: all accepted symbols of the nearest scope that has
/// one, in insertion order. Which of several is meant, and that there is one at all, is for the
/// caller to decide. A symbol that the filter refuses hides nothing.
class NameResolver {
public:
    explicit NameResolver(const ScopePtr& scope) : scope_(scope) {}

    /// Looks through the enclosing scopes. An empty filter accepts every kind; the result is empty
    /// where no scope has such a symbol.
    std::vector<SymbolPtr> resolve(std::string_view name,
                                   const OrvCountedPtr<SymbolFilter>& filter) const;
    /// The same in the resolver's own scope alone.
    std::vector<SymbolPtr> resolveLocal(std::string_view name,
                                        const OrvCountedPtr<SymbolFilter>& filter) const;

private:
    ScopePtr scope_;
};

using NameResolverPtr = OrvCountedPtr<NameResolver>;
