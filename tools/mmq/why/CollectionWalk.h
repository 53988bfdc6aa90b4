// The walk from a collection back to the paths that its objects come from.
#pragma once

#include "ast/ASTVisitor.h"

namespace mmq {

/// Tells kinds of collections apart by what they do with the objects of others. A walk that goes
/// on from a node does so in its operation for it.
class CollectionWalk {
public:
    CollectionWalk() = default;
    CollectionWalk(const CollectionWalk&) = delete;
    CollectionWalk& operator=(const CollectionWalk&) = delete;

protected:
    ~CollectionWalk() = default;

    /// Calls the operation for the collection; the objects of a class come from nowhere.
    void walk(ExpressionNode& collection);

    /// A call of "unique", "unique_stable" or "reverse", whose objects are those of another
    /// collection: unless a walk has its own way, it goes on there.
    virtual void atRearrangement(const ApplicationExpressionNode& node) { walk(*node.getExpr()); }

    virtual void atFilter(FilterExpressionNode& node) = 0;
    virtual void atTraverse(TraverseExpressionNode& node) = 0;
    virtual void atLet(LetExpressionNode& node) = 0;
    virtual void atConditional(IfExpressionNode& node) = 0;
    /// A path, or a variable.
    virtual void atPath(PathNode& node) = 0;
};

}  // namespace mmq
