// The scopes of one expression, by node.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>
#include <utility>
#include <vector>

#include "ast/ASTNode.h"
#include "foundation/SegmentedArray.h"
#include "foundation/SmallArray.h"
#include "namespace/NameResolver.h"
#include "namespace/Scope.h"

/// For each node of a tree, the scope in which names used at that node are looked up.
///
/// Made by name space construction, read by the type checker and by code generation, released with
/// the compilation. Keeps the scopes, borrows the nodes, each of which knows its entry. Most scopes
/// are those of paths and declare nothing: such a scope is a number until somebody asks for it.
class NameSpace : public OrvCountedObject {
public:
    /// The number of a scope; scopes are numbered as they are added.
    using ScopeNumber = std::uint32_t;
    static constexpr ScopeNumber noScope = 0xFFFFFFFFU;
    /// The name of the scopes of paths.
    static constexpr const char* pathScopeName = "Path";

    struct Entry {
        ASTNode* node;
        ScopeNumber scope;
    };

    using Entries = SegmentedArray<Entry, 16>;

    /// Scopes that it makes itself come from the region, where there is one.
    explicit NameSpace(OrvMemoryRegion* region = nullptr) : region_(region) {}
    NameSpace(const NameSpace&) = delete;
    NameSpace& operator=(const NameSpace&) = delete;

    /// Records the scope of a node; each node is recorded once.
    void setScope(ASTNode& node, const ScopePtr& scope) {
        setScope(node, addScope(scope, noScope));
    }

    /// The same by the number of a scope, which many nodes share. `parent` is the number of the
    /// scope around it.
    ScopeNumber addScope(ScopePtr scope, ScopeNumber parent) {
        scopes_.append(std::move(scope));
        return addPlace(parent, static_cast<ScopeNumber>(scopes_.size() - 1));
    }
    /// Adds the scope of a path, which declares nothing yet.
    ScopeNumber addPathScope(ScopeNumber parent) { return addPlace(parent, noScope); }
    void setScope(ASTNode& node, ScopeNumber scope) {
        if (!hasScope(node)) {
            setFirstScope(node, scope);
        }
    }
    /// The same for a node that has none yet.
    void setFirstScope(ASTNode& node, ScopeNumber scope) {
        node.setScopeEntry(static_cast<std::int32_t>(entries_.size()));
        entries_.append(&node, scope);
    }
    bool hasScope(const ASTNode& node) const { return findEntry(node) != nullptr; }

    /// The scope of a number, the scope of a node that was recorded, and the number of the scope
    /// around another one.
    ScopePtr scope(ScopeNumber number) const;
    ScopePtr scopeOf(const ASTNode& node) const { return scope(findEntry(node)->scope); }
    ScopeNumber parentOf(ScopeNumber number) const { return places_[number].parent; }

    /// A resolver that starts in the node's scope; empty for a node that was not recorded.
    NameResolverPtr getResolver(const ASTNode& node) const;

    /// What the resolver of a recorded node finds of one kind, without copying it.
    SymbolView find(const ASTNode& node, std::string_view name, SymbolKind kind) const;
    /// The scope with which such a search begins: the innermost one that may declare something.
    /// Null for a node that was not recorded.
    const Scope* searchedScope(const ASTNode& node) const {
        const Entry* const entry = findEntry(node);
        return entry != nullptr ? searchedScope(places_[entry->scope]) : nullptr;
    }

    /// Forgets the scopes, which all stand in a region and end with it.
    void abandonScopes() { scopes_.abandon(); }

    /// All entries, in the order in which they were recorded.
    const Entries& entries() const { return entries_; }

private:
    /// Where a scope is: its number in scopes_, or noScope for that of a path that declares
    /// nothing.
    struct Place {
        ScopeNumber parent;
        ScopeNumber index;
    };

    const Scope* searchedScope(const Place& place) const {
        const Place* searched = &place;
        while (searched->index == noScope) {
            searched = &places_[searched->parent];
        }
        return scopes_[searched->index].get();
    }

    ScopeNumber addPlace(ScopeNumber parent, ScopeNumber index) {
        places_.append(parent, index);
        return static_cast<ScopeNumber>(places_.size() - 1);
    }

    // A number that another name space left in the node leads to no entry, or to another node's.
    const Entry* findEntry(const ASTNode& node) const {
        const auto number = static_cast<std::size_t>(node.getScopeEntry());
        return number < entries_.size() && entries_[number].node == &node ? &entries_[number]
                                                                          : nullptr;
    }

    Entries entries_;
    mutable SegmentedArray<Place, 8> places_;
    mutable SmallArray<ScopePtr, 2> scopes_;
    OrvMemoryRegion* region_;
};

/// A scope with the scopes inside it, in the order in which they were attached; made for printing.
class ScopeTree {
public:
    explicit ScopeTree(const ScopePtr& scope) : scope_(scope) {}

    const ScopePtr& getScope() const { return scope_; }
    const std::vector<OrvCountedPtr<ScopeTree>>& getChildren() const { return children_; }
    void addChild(const OrvCountedPtr<ScopeTree>& child) { children_.push_back(child); }

private:
    ScopePtr scope_;
    std::vector<OrvCountedPtr<ScopeTree>> children_;
};

/// Writes the scopes of a name space as trees, a line for each outermost one, in the order of the
/// text. The scope of the built-in functions belongs to no node and is not written.
class NameSpacePrinter {
public:
    explicit NameSpacePrinter(std::ostream& stream) : stream_(stream) {}
    void print(const NameSpace& nameSpace);

private:
    void printTree(const ScopeTree& tree);

    std::ostream& stream_;
};
