// How an object came into a collection.
#pragma once

#include "why/CollectionWalk.h"
#include "why/Explanation.h"

namespace mmq {

/// Follows an object from the collection that has it back through filters, orders and traversals
/// to the path that reached it. Made on the stack.
class ElementExplainer : private CollectionWalk {
public:
    /// With `isThorough`, also why the conditions of filters and conditionals let it pass.
    ElementExplainer(Explanation& explanation, bool isThorough)
        : explanation_(explanation), isThorough_(isThorough) {}

    /// Adds the evidence for one object of the collection; of one that stands there several times,
    /// for that place before which it stands so many times.
    void explain(ExpressionNode& collection, MMObject element, std::size_t earlier = 0);

private:
    void goOn(ExpressionNode& collection) { explain(collection, element_, earlier_); }

    void atRearrangement(const ApplicationExpressionNode& node) override;
    void atFilter(FilterExpressionNode& node) override;
    void atTraverse(TraverseExpressionNode& node) override;
    void atLet(LetExpressionNode& node) override;
    void atConditional(IfExpressionNode& node) override;
    void atPath(PathNode& node) override;

    Explanation& explanation_;
    bool isThorough_;
    MMObject element_ = mmNoObject;
    std::size_t earlier_ = 0;
};

}  // namespace mmq
