// The chain of binary expressions that leans to the left below one of them.
#pragma once

#include <iterator>

#include "ast/ExpressionNode.h"
#include "foundation/SmallArray.h"

/// The binary expressions from `top` down through left operands, as long as these are binary
/// expressions too. Chains of left-associative operators are as long as a text, and visitors
/// handle them in a loop: from the top down, then the innermost left operand, then upward the
/// right ones. Borrows the nodes; made on the stack for one visit.
class LeftSpine {
public:
    explicit LeftSpine(BinaryExpressionNode& top) {
        for (BinaryExpressionNode* node = &top; node != nullptr; node = below(*node)) {
            nodes_.append(node);
        }
    }

    /// The nodes from the top down.
    auto begin() const { return nodes_.begin(); }
    auto end() const { return nodes_.end(); }
    /// The nodes from the innermost up.
    auto rbegin() const { return std::make_reverse_iterator(nodes_.end()); }
    auto rend() const { return std::make_reverse_iterator(nodes_.begin()); }

    /// The left operand of the innermost node.
    const ExpressionPtr& innermostOperand() const { return nodes_.back()->getLhs(); }

private:
    static BinaryExpressionNode* below(const BinaryExpressionNode& node) {
        ExpressionNode* const lhs = node.getLhs().get();
        return lhs != nullptr && lhs->getExpressionKind() == ExpressionKind::binaryExpression
                   ? static_cast<BinaryExpressionNode*>(lhs)
                   : nullptr;
    }

    SmallArray<BinaryExpressionNode*, 16> nodes_;
};
