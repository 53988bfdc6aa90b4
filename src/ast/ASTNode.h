// The base of the syntax tree's nodes, and its root.
#pragma once

#include <cstdint>
#include <utility>

#include "ast/SourceSpan.h"
#include "foundation/OrvCountedPtr.h"

class ASTVisitor;
class ExpressionNode;

enum class NodeKind : std::uint32_t { specification = 0, expression = 1, association = 2 };

/// A node of the syntax tree that the parser builds, one tree a text.
///
/// Nodes hold their children by counted pointers, an absent child by an empty one; they are shared
/// and never copied. They are plain data: what is done with a tree is done by visitors, which
/// decide themselves in which order the children accept them. Later passes annotate nodes in
/// place. A tree belongs to the thread of its compilation. Kinds and operators are kept in a byte
/// each: the tree of a long text is read from memory once a phase, and its size is what that costs.
class ASTNode : public OrvCountedObject {
public:
    ASTNode(const ASTNode&) = delete;
    ASTNode& operator=(const ASTNode&) = delete;
    ~ASTNode() override;

    /// Calls the visitor's operation for the class of this node.
    virtual void accept(ASTVisitor& visitor) = 0;

    NodeKind getNodeKind() const { return static_cast<NodeKind>(nodeKind_); }

    /// The place in the text at which a person would point for this node: the operator of a binary
    /// or relational expression, else the first token. Counted from 1; -1 until it is set.
    std::int32_t getLine() const { return span_.line; }
    std::int32_t getColumn() const { return span_.column; }
    void setPosition(std::int32_t line, std::int32_t column) {
        span_.line = line;
        span_.column = column;
    }

    /// The same place, with the bytes that the whole of the node was parsed from.
    const SourceSpan& getSpan() const { return span_; }
    void setSpan(const SourceSpan& span) { span_ = span; }

    /// The number of the node's entry in the name space that recorded it last; -1 before.
    std::int32_t getScopeEntry() const { return scopeEntry_; }
    void setScopeEntry(std::int32_t entry) { scopeEntry_ = entry; }

protected:
    explicit ASTNode(NodeKind nodeKind) : nodeKind_(static_cast<std::uint8_t>(nodeKind)) {}

private:
    SourceSpan span_;
    std::int32_t scopeEntry_ = -1;
    std::uint8_t nodeKind_;
};

/// The root of a tree: a whole expression.
class SpecificationNode final : public ASTNode {
public:
    explicit SpecificationNode(OrvCountedPtr<ExpressionNode> expr)
        : ASTNode(NodeKind::specification), expr_(std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;

    const OrvCountedPtr<ExpressionNode>& getExpr() const { return expr_; }

private:
    OrvCountedPtr<ExpressionNode> expr_;
};
