// The chain of binary expressions that leans to the left below one of them.
#pragma once

#include <cstdint>

#include "ast/ExpressionNode.h"

/// The binary expressions from the innermost one up to `top`, each the left operand of the next.
/// Chains of left-associative operators are as long as a text, and visitors handle them in a loop:
/// the innermost left operand, then upward the right ones. That is the order in which the parser
/// made them, so that a long chain is read as it lies in memory. Borrows the nodes; made on the
/// stack for one visit.
class LeftSpine {
public:
    class Iterator {
    public:
        Iterator(BinaryExpressionNode* node, const BinaryExpressionNode* top)
            : node_(node), top_(top) {}

        BinaryExpressionNode& operator*() const { return *node_; }
        Iterator& operator++() {
            node_ = node_ == top_ ? nullptr : node_->getOuter();
            if (node_ != nullptr) {
                prefetch(node_->getOuter());
            }
            return *this;
        }
        friend bool operator==(const Iterator& left, const Iterator& right) {
            return left.node_ == right.node_;
        }

    private:
        // A tree larger than the caches is read once a phase: the node behind the one that is
        // visited now comes meanwhile, with its operands, which mostly stand in front of it.
        static void prefetch(const BinaryExpressionNode* node) {
            constexpr std::uintptr_t line = 64;
            constexpr std::uintptr_t lines = 10;
            const auto place = reinterpret_cast<std::uintptr_t>(node);
            for (std::uintptr_t i = 0; i < lines; ++i) {
                __builtin_prefetch(reinterpret_cast<const void*>(place - i * line));
            }
        }

        BinaryExpressionNode* node_;
        const BinaryExpressionNode* top_;
    };

    explicit LeftSpine(BinaryExpressionNode& top) : top_(top) {}

    /// The nodes from the innermost up.
    Iterator begin() const { return {&innermost(), &top_}; }
    Iterator end() const { return {nullptr, &top_}; }

    BinaryExpressionNode& innermost() const { return top_.getInnermost(); }
    /// The left operand of the innermost node.
    const ExpressionPtr& innermostOperand() const { return innermost().getLhs(); }

private:
    BinaryExpressionNode& top_;
};
