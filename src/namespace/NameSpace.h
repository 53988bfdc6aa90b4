// The scopes of one expression, by node.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <unordered_map>
#include <vector>

#include "ast/ASTNode.h"
#include "namespace/NameResolver.h"
#include "namespace/Scope.h"

/// For each node of a tree, the scope in which names used at that node are looked up.
///
/// Made by name space construction, read by the type checker and by code generation, released with
/// the compilation. Keeps the scopes, borrows the nodes.
class NameSpace {
public:
    struct Entry {
        const ASTNode* node;
        ScopePtr scope;
    };

    NameSpace() = default;
    NameSpace(const NameSpace&) = delete;
    NameSpace& operator=(const NameSpace&) = delete;

    /// Records the scope of a node; each node is recorded once.
    void setScope(const ASTNode& node, const ScopePtr& scope);
    bool hasScope(const ASTNode& node) const { return index_.count(&node) > 0; }

    /// A resolver that starts in the node's scope; empty for a node that was not recorded.
    NameResolverPtr getResolver(const ASTNode& node) const;

    /// All entries, in the order in which they were recorded.
    const std::vector<Entry>& entries() const { return entries_; }

private:
    std::vector<Entry> entries_;
    std::unordered_map<const ASTNode*, std::size_t> index_;
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
