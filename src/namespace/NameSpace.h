// The scopes of one expression, by node.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>
#include <vector>

#include "ast/ASTNode.h"
#include "namespace/NameResolver.h"
#include "namespace/Scope.h"

/// For each node of a tree, the scope in which names used at that node are looked up.
///
/// Made by name space construction, read by the type checker and by code generation, released with
/// the compilation. Keeps the scopes, borrows the nodes, each of which knows its entry.
class NameSpace : public OrvCountedObject {
public:
    struct Entry {
        ASTNode* node;
        std::size_t scope;  ///< its number in scopes()
    };

    NameSpace();
    NameSpace(const NameSpace&) = delete;
    NameSpace& operator=(const NameSpace&) = delete;

    /// Records the scope of a node; each node is recorded once.
    void setScope(ASTNode& node, const ScopePtr& scope) { setScope(node, addScope(scope)); }

    /// The same by the number of a scope, which many nodes share.
    std::size_t addScope(const ScopePtr& scope) {
        scopes_.push_back(scope);
        return scopes_.size() - 1;
    }
    void setScope(ASTNode& node, std::size_t scope) {
        if (!hasScope(node)) {
            node.setScopeEntry(static_cast<std::int32_t>(entries_.size()));
            entries_.push_back({&node, scope});
        }
    }
    bool hasScope(const ASTNode& node) const { return findEntry(node) != nullptr; }

    /// A resolver that starts in the node's scope; empty for a node that was not recorded.
    NameResolverPtr getResolver(const ASTNode& node) const;

    /// What the resolver of a recorded node finds of one kind, without copying it.
    SymbolView find(const ASTNode& node, std::string_view name, SymbolKind kind) const;

    /// All entries, in the order in which they were recorded.
    const std::vector<Entry>& entries() const { return entries_; }
    /// The scopes of the entries, some of them more than once.
    const OrvPoolVector<ScopePtr>& scopes() const { return scopes_; }

private:
    // A number that another name space left in the node leads to no entry, or to another node's.
    const Entry* findEntry(const ASTNode& node) const {
        const auto number = static_cast<std::size_t>(node.getScopeEntry());
        return number < entries_.size() && entries_[number].node == &node ? &entries_[number]
                                                                          : nullptr;
    }

    std::vector<Entry> entries_;
    OrvPoolVector<ScopePtr> scopes_;
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
