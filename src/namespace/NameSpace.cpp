#include "namespace/NameSpace.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>

#include "foundation/TextOutput.h"
#include "support/OrvStack.h"
#include "support/ParseException.h"

// Scopes that declare nothing are those of paths, which do not stand in each other without another
// scope between them: this recursion ends at once.
ScopePtr NameSpace::scope(ScopeNumber number) const {
    Place& place = places_[number];
    if (place.index == noScope) {
        scopes_.append(ScopePtr(new (region_) Scope(pathScopeName, scope(place.parent), region_)));
        place.index = static_cast<ScopeNumber>(scopes_.size() - 1);
    }
    return scopes_[place.index];
}

NameResolverPtr NameSpace::getResolver(const ASTNode& node) const {
    return hasScope(node) ? NameResolverPtr(new NameResolver(scopeOf(node))) : NameResolverPtr();
}

SymbolView NameSpace::find(const ASTNode& node, std::string_view name, SymbolKind kind) const {
    const Scope* const scope = searchedScope(node);
    return scope != nullptr ? NameResolver::find(*scope, name, kind) : SymbolView();
}

namespace {

using ScopeTreePtr = OrvCountedPtr<ScopeTree>;

// One tree for each scope of the name space, in the order in which the text meets them.
std::vector<ScopeTreePtr> treesInTextOrder(const NameSpace& nameSpace) {
    std::vector<const NameSpace::Entry*> entries;
    for (const NameSpace::Entry& entry : nameSpace.entries()) {
        entries.push_back(&entry);
    }
    std::stable_sort(entries.begin(), entries.end(), [](const auto* left, const auto* right) {
        return std::make_pair(left->node->getLine(), left->node->getColumn()) <
               std::make_pair(right->node->getLine(), right->node->getColumn());
    });
    std::vector<ScopeTreePtr> trees;
    std::unordered_map<const Scope*, bool> met;
    for (const NameSpace::Entry* entry : entries) {
        const ScopePtr scope = nameSpace.scope(entry->scope);
        if (met.emplace(scope.get(), true).second) {
            trees.push_back(ScopeTreePtr(new ScopeTree(scope)));
        }
    }
    return trees;
}

// Attaches each tree to that of its scope's parent; returns those that have none.
std::vector<ScopeTreePtr> attach(const std::vector<ScopeTreePtr>& trees) {
    std::unordered_map<const Scope*, ScopeTreePtr> byScope;
    for (const ScopeTreePtr& tree : trees) {
        byScope.emplace(tree->getScope().get(), tree);
    }
    std::vector<ScopeTreePtr> outermost;
    for (const ScopeTreePtr& tree : trees) {
        const auto parent = byScope.find(tree->getScope()->getParent().get());
        if (parent != byScope.end()) {
            parent->second->addChild(tree);
        } else {
            outermost.push_back(tree);
        }
    }
    return outermost;
}

}  // namespace

void NameSpacePrinter::printTree(const ScopeTree& tree) {
    if (!OrvStack::hasRoom()) {
        throwLogged(OrvException("The scopes are nested too deeply to be printed."));
    }
    writeText(stream_, "ScopeTree( ");
    ScopePrinter(stream_).print(*tree.getScope());
    for (const ScopeTreePtr& child : tree.getChildren()) {
        writeText(stream_, " ");
        printTree(*child);
    }
    writeText(stream_, " )");
}

void NameSpacePrinter::print(const NameSpace& nameSpace) {
    for (const ScopeTreePtr& tree : attach(treesInTextOrder(nameSpace))) {
        writeText(stream_, "Top-level ScopeTree: ");
        printTree(*tree);
        writeText(stream_, "\n");
    }
}
