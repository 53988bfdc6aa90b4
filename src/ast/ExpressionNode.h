// The twenty kinds of expressions.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "ast/ASTNode.h"
#include "ast/AssociationNode.h"
#include "foundation/OrvMemoryRegion.h"
#include "foundation/OrvRegionText.h"
#include "foundation/SmallArray.h"

class FunctionSymbol;
class TypeExpression;
class VariableSymbol;

enum class ExpressionKind : std::uint32_t {
    universalQuantifier = 0,
    existentialQuantifier = 1,
    binaryExpression = 2,
    unaryExpression = 3,
    relationalExpression = 4,
    applicationExpression = 5,
    mapExpression = 6,
    filterExpression = 7,
    traverseExpression = 8,
    sortExpression = 9,
    letExpression = 10,
    ifExpression = 11,
    tupleExpression = 12,
    unitExpression = 13,
    regExpConstant = 14,
    stringConstant = 15,
    integerConstant = 16,
    realConstant = 17,
    booleanConstant = 18,
    path = 19
};

/// Values 0 to 2 are the logical operators, 3 to 6 the arithmetic ones.
enum class BinaryOperator : std::uint32_t {
    IMPLIES = 0,
    AND = 1,
    OR = 2,
    ADD = 3,
    SUBTRACT = 4,
    MULTIPLY = 5,
    DIVIDE = 6
};

enum class UnaryOperator : std::uint32_t { MINUS = 0, NOT = 1 };

enum class RelationalOperator : std::uint32_t {
    EQUAL = 0,
    NOT_EQUAL = 1,
    REGEXP_EQUAL = 2,
    REGEXP_NOT_EQUAL = 3,
    LESS = 4,
    LESS_EQUAL = 5,
    GREATER = 6,
    GREATER_EQUAL = 7
};

/// The predefined anchors of paths: "this", "current" and "model".
enum class AnchorKind : std::uint32_t { THIS = 0, CURRENT = 1, MODEL = 2 };

/// An expression of any kind.
class ExpressionNode : public ASTNode {
public:
    ExpressionKind getExpressionKind() const {
        return static_cast<ExpressionKind>(expressionKind_);
    }

protected:
    explicit ExpressionNode(ExpressionKind expressionKind)
        : ASTNode(NodeKind::expression),
          expressionKind_(static_cast<std::uint8_t>(expressionKind)) {}
    /// An operation, with its operator.
    template <class Operator>
    ExpressionNode(ExpressionKind expressionKind, Operator op) : ExpressionNode(expressionKind) {
        operator_ = static_cast<std::uint8_t>(op);
    }

    /// The operator of an operation.
    template <class Operator>
    Operator getOperator() const {
        return static_cast<Operator>(operator_);
    }

private:
    std::uint8_t expressionKind_;
    std::uint8_t operator_ = 0;
};

using ExpressionPtr = OrvCountedPtr<ExpressionNode>;
using AssociationPtr = OrvCountedPtr<AssociationNode>;

/// A quantifier: a test of the objects of a source set, each bound to a variable in turn.
class QuantifierNode : public ExpressionNode {
public:
    std::string_view getName() const { return name_.view(); }
    const ExpressionPtr& getSource() const { return source_; }
    const ExpressionPtr& getExpr() const { return expr_; }

    /// The quantifier's own variable; set by name space construction.
    const OrvCountedPtr<VariableSymbol>& getBoundVariable() const { return boundVariable_; }
    void setBoundVariable(const OrvCountedPtr<VariableSymbol>& symbol) { boundVariable_ = symbol; }

protected:
    QuantifierNode(ExpressionKind kind, OrvRegionText name, ExpressionPtr source,
                   ExpressionPtr expr)
        : ExpressionNode(kind),
          name_(std::move(name)),
          source_(std::move(source)),
          expr_(std::move(expr)) {}

private:
    OrvRegionText name_;
    ExpressionPtr source_;
    ExpressionPtr expr_;
    OrvCountedPtr<VariableSymbol> boundVariable_;
};

/// "for_all name in source => expr".
class UniversalQuantifierNode final : public QuantifierNode {
public:
    UniversalQuantifierNode(OrvRegionText name, ExpressionPtr source, ExpressionPtr expr)
        : QuantifierNode(ExpressionKind::universalQuantifier, std::move(name), std::move(source),
                         std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;
};

/// "there_exists name in source => expr".
class ExistentialQuantifierNode final : public QuantifierNode {
public:
    ExistentialQuantifierNode(OrvRegionText name, ExpressionPtr source, ExpressionPtr expr)
        : QuantifierNode(ExpressionKind::existentialQuantifier, std::move(name), std::move(source),
                         std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;
};

/// A logical or arithmetic operation. Operators that are left-associative form chains through
/// `lhs` that may be as long as a text: see LeftSpine, which follows them upward. An operation that
/// is the left operand of several others is part of the chain of the first one.
class BinaryExpressionNode final : public ExpressionNode {
public:
    BinaryExpressionNode(BinaryOperator op, ExpressionPtr lhs, ExpressionPtr rhs)
        : ExpressionNode(ExpressionKind::binaryExpression, op),
          lhs_(std::move(lhs)),
          rhs_(std::move(rhs)) {
        continueChain();
    }
    void accept(ASTVisitor& visitor) override;

    BinaryOperator getOp() const { return getOperator<BinaryOperator>(); }
    const ExpressionPtr& getLhs() const { return lhs_; }
    const ExpressionPtr& getRhs() const { return rhs_; }

    /// Where the chain that ends with this node begins: below it, or with itself.
    BinaryExpressionNode& getInnermost() const { return *innermost_; }
    /// The node that continues the chain: of one that is alive, unless this is the chain's last.
    BinaryExpressionNode* getOuter() const { return outer_; }

private:
    void continueChain() {
        if (lhs_.get() == nullptr ||
            lhs_.get()->getExpressionKind() != ExpressionKind::binaryExpression) {
            return;
        }
        auto& left = static_cast<BinaryExpressionNode&>(*lhs_.get());
        if (left.outer_ == nullptr) {
            left.outer_ = this;
            innermost_ = left.innermost_;
        }
    }

    ExpressionPtr lhs_;
    ExpressionPtr rhs_;
    BinaryExpressionNode* innermost_ = this;
    BinaryExpressionNode* outer_ = nullptr;
};

/// "-expr" or "not expr".
class UnaryExpressionNode final : public ExpressionNode {
public:
    UnaryExpressionNode(UnaryOperator op, ExpressionPtr expr)
        : ExpressionNode(ExpressionKind::unaryExpression, op), expr_(std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;

    UnaryOperator getOp() const { return getOperator<UnaryOperator>(); }
    const ExpressionPtr& getExpr() const { return expr_; }

private:
    ExpressionPtr expr_;
};

/// The overload that the type checker chose for a call or a comparison.
class ResolvedFunctionNode : public ExpressionNode {
public:
    const OrvCountedPtr<FunctionSymbol>& getResolvedFunction() const { return resolvedFunction_; }
    void setResolvedFunction(OrvCountedPtr<FunctionSymbol> symbol) {
        resolvedFunction_ = std::move(symbol);
    }

protected:
    using ExpressionNode::ExpressionNode;

private:
    OrvCountedPtr<FunctionSymbol> resolvedFunction_;
};

/// A comparison.
class RelationalExpressionNode final : public ResolvedFunctionNode {
public:
    RelationalExpressionNode(RelationalOperator op, ExpressionPtr lhs, ExpressionPtr rhs)
        : ResolvedFunctionNode(ExpressionKind::relationalExpression, op),
          lhs_(std::move(lhs)),
          rhs_(std::move(rhs)) {}
    void accept(ASTVisitor& visitor) override;

    RelationalOperator getOp() const { return getOperator<RelationalOperator>(); }
    const ExpressionPtr& getLhs() const { return lhs_; }
    const ExpressionPtr& getRhs() const { return rhs_; }

private:
    ExpressionPtr lhs_;
    ExpressionPtr rhs_;
};

/// A function applied to its argument; several arguments are one tuple.
class ApplicationExpressionNode final : public ResolvedFunctionNode {
public:
    ApplicationExpressionNode(OrvRegionText name, ExpressionPtr expr)
        : ResolvedFunctionNode(ExpressionKind::applicationExpression),
          name_(std::move(name)),
          expr_(std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getName() const { return name_.view(); }
    const ExpressionPtr& getExpr() const { return expr_; }

private:
    OrvRegionText name_;
    ExpressionPtr expr_;
};

/// "map { function } over source".
class MapExpressionNode final : public ExpressionNode {
public:
    MapExpressionNode(ExpressionPtr function, ExpressionPtr source)
        : ExpressionNode(ExpressionKind::mapExpression),
          function_(std::move(function)),
          source_(std::move(source)) {}
    void accept(ASTVisitor& visitor) override;

    const ExpressionPtr& getFunction() const { return function_; }
    const ExpressionPtr& getSource() const { return source_; }

private:
    ExpressionPtr function_;
    ExpressionPtr source_;
};

/// "filter { predicate } over source".
class FilterExpressionNode final : public ExpressionNode {
public:
    FilterExpressionNode(ExpressionPtr predicate, ExpressionPtr source)
        : ExpressionNode(ExpressionKind::filterExpression),
          predicate_(std::move(predicate)),
          source_(std::move(source)) {}
    void accept(ASTVisitor& visitor) override;

    const ExpressionPtr& getPredicate() const { return predicate_; }
    const ExpressionPtr& getSource() const { return source_; }

private:
    ExpressionPtr predicate_;
    ExpressionPtr source_;
};

/// "traverse { path } over source".
class TraverseExpressionNode final : public ExpressionNode {
public:
    TraverseExpressionNode(ExpressionPtr path, ExpressionPtr source)
        : ExpressionNode(ExpressionKind::traverseExpression),
          path_(std::move(path)),
          source_(std::move(source)) {}
    void accept(ASTVisitor& visitor) override;

    const ExpressionPtr& getPath() const { return path_; }
    const ExpressionPtr& getSource() const { return source_; }

private:
    ExpressionPtr path_;
    ExpressionPtr source_;
};

/// One key of a sort: a value, not a node.
class SortKey {
public:
    explicit SortKey(ExpressionPtr expr, bool isAscending = true)
        : expr_(std::move(expr)), isAscending_(isAscending) {}

    const ExpressionPtr& getExpr() const { return expr_; }
    bool isAscending() const { return isAscending_; }

    /// The key's own variable "current"; set by name space construction.
    const OrvCountedPtr<VariableSymbol>& getBoundVariable() const { return boundVariable_; }
    void setBoundVariable(const OrvCountedPtr<VariableSymbol>& symbol) { boundVariable_ = symbol; }

private:
    ExpressionPtr expr_;
    bool isAscending_;
    OrvCountedPtr<VariableSymbol> boundVariable_;
};

/// The keys of one sort, the most significant one first; in a region where the sort is in one.
using SortKeys = OrvRegionVector<SortKey>;

/// "sort { key } & sortd { key } over source".
class SortExpressionNode final : public ExpressionNode {
public:
    explicit SortExpressionNode(SortKeys keys = SortKeys(), ExpressionPtr source = {})
        : ExpressionNode(ExpressionKind::sortExpression),
          keys_(std::move(keys)),
          source_(std::move(source)) {}
    void accept(ASTVisitor& visitor) override;

    const SortKeys& getKeys() const { return keys_; }
    SortKeys& getKeys() { return keys_; }
    void setKeys(SortKeys keys) { keys_ = std::move(keys); }
    const ExpressionPtr& getSource() const { return source_; }
    void setSource(const ExpressionPtr& source) { source_ = source; }

private:
    SortKeys keys_;
    ExpressionPtr source_;
};

/// The type that the type checker found for a let or an if, by which code generation chooses.
class ResultTypeNode : public ExpressionNode {
public:
    const OrvCountedPtr<TypeExpression>& getResultType() const { return resultType_; }
    void setResultType(const OrvCountedPtr<TypeExpression>& type) { resultType_ = type; }

protected:
    using ExpressionNode::ExpressionNode;

private:
    OrvCountedPtr<TypeExpression> resultType_;
};

/// "let name = source in expr".
class LetExpressionNode final : public ResultTypeNode {
public:
    LetExpressionNode(OrvRegionText name, ExpressionPtr source, ExpressionPtr expr)
        : ResultTypeNode(ExpressionKind::letExpression),
          name_(std::move(name)),
          source_(std::move(source)),
          expr_(std::move(expr)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getName() const { return name_.view(); }
    const ExpressionPtr& getSource() const { return source_; }
    const ExpressionPtr& getExpr() const { return expr_; }

    /// The let's variable; set by name space construction.
    const OrvCountedPtr<VariableSymbol>& getBoundVariable() const { return boundVariable_; }
    void setBoundVariable(const OrvCountedPtr<VariableSymbol>& symbol) { boundVariable_ = symbol; }

private:
    OrvRegionText name_;
    ExpressionPtr source_;
    ExpressionPtr expr_;
    OrvCountedPtr<VariableSymbol> boundVariable_;
};

/// "if test then then else else".
class IfExpressionNode final : public ResultTypeNode {
public:
    IfExpressionNode(ExpressionPtr test, ExpressionPtr thenBranch, ExpressionPtr elseBranch)
        : ResultTypeNode(ExpressionKind::ifExpression),
          test_(std::move(test)),
          then_(std::move(thenBranch)),
          else_(std::move(elseBranch)) {}
    void accept(ASTVisitor& visitor) override;

    const ExpressionPtr& getTest() const { return test_; }
    const ExpressionPtr& getThen() const { return then_; }
    const ExpressionPtr& getElse() const { return else_; }

private:
    ExpressionPtr test_;
    ExpressionPtr then_;
    ExpressionPtr else_;
};

/// "(a, b, c)". Two elements, as most tuples have, stand in the node itself.
class TupleExpressionNode final : public ExpressionNode {
public:
    /// What is beyond two elements comes from the region, where there is one.
    explicit TupleExpressionNode(OrvMemoryRegion* region = nullptr)
        : ExpressionNode(ExpressionKind::tupleExpression), elements_(region) {}
    TupleExpressionNode(ExpressionPtr first, ExpressionPtr second,
                        OrvMemoryRegion* region = nullptr)
        : ExpressionNode(ExpressionKind::tupleExpression),
          elements_(region, std::in_place, std::move(first), std::move(second)) {}
    void accept(ASTVisitor& visitor) override;

    /// Valid until an element is added.
    std::span<const ExpressionPtr> getElements() const {
        return {elements_.begin(), elements_.end()};
    }
    void addElement(ExpressionPtr element) { elements_.append(std::move(element)); }

private:
    SmallArray<ExpressionPtr, 2> elements_;
};

/// "()".
class UnitExpressionNode final : public ExpressionNode {
public:
    UnitExpressionNode() : ExpressionNode(ExpressionKind::unitExpression) {}
    void accept(ASTVisitor& visitor) override;
};

/// A pattern, without its quotes.
class RegExpConstantNode final : public ExpressionNode {
public:
    explicit RegExpConstantNode(OrvRegionText text)
        : ExpressionNode(ExpressionKind::regExpConstant), text_(std::move(text)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getText() const { return text_.view(); }

private:
    OrvRegionText text_;
};

/// A text, without its quotes and with its escapes replaced.
class StringConstantNode final : public ExpressionNode {
public:
    explicit StringConstantNode(OrvRegionText text)
        : ExpressionNode(ExpressionKind::stringConstant), text_(std::move(text)) {}
    void accept(ASTVisitor& visitor) override;

    std::string_view getText() const { return text_.view(); }

private:
    OrvRegionText text_;
};

class IntegerConstantNode final : public ExpressionNode {
public:
    explicit IntegerConstantNode(std::int32_t value)
        : ExpressionNode(ExpressionKind::integerConstant), value_(value) {}
    void accept(ASTVisitor& visitor) override;

    std::int32_t getValue() const { return value_; }

private:
    std::int32_t value_;
};

class RealConstantNode final : public ExpressionNode {
public:
    explicit RealConstantNode(double value)
        : ExpressionNode(ExpressionKind::realConstant), value_(value) {}
    void accept(ASTVisitor& visitor) override;

    double getValue() const { return value_; }

private:
    double value_;
};

class BooleanConstantNode final : public ExpressionNode {
public:
    explicit BooleanConstantNode(bool value)
        : ExpressionNode(ExpressionKind::booleanConstant), value_(value) {}
    void accept(ASTVisitor& visitor) override;

    bool getValue() const { return value_; }

private:
    bool value_;
};

/// The name of a predefined anchor, that of "this" for a kind that is none of the three.
constexpr std::string_view anchorText(AnchorKind anchorKind) {
    switch (anchorKind) {
        case AnchorKind::CURRENT:
            return "current";
        case AnchorKind::MODEL:
            return "model";
        default:
            return "this";
    }
}

/// A variable, or the objects that a path of associations reaches from it.
class PathNode final : public ExpressionNode {
public:
    explicit PathNode(OrvRegionText anchor, AssociationPtr association = {})
        : ExpressionNode(ExpressionKind::path),
          anchor_(std::move(anchor)),
          association_(std::move(association)) {}
    /// A path from a predefined anchor; a kind that is none of the three stands for "this".
    explicit PathNode(AnchorKind anchorKind, AssociationPtr association = {})
        : PathNode(OrvRegionText::constant(anchorText(anchorKind)), std::move(association)) {}
    void accept(ASTVisitor& visitor) override;

    /// The name of the variable or label at which the path starts.
    std::string_view getAnchor() const { return anchor_.view(); }
    /// Whether the path starts at the predefined anchor of that kind, however it was built.
    bool isAnchor(AnchorKind anchorKind) const { return anchor_.view() == anchorText(anchorKind); }

    const AssociationPtr& getAssociation() const { return association_; }

    /// The variable at which the path starts; set by the type checker.
    const OrvCountedPtr<VariableSymbol>& getAnchorVariable() const { return anchorVariable_; }
    void setAnchorVariable(const OrvCountedPtr<VariableSymbol>& symbol) {
        anchorVariable_ = symbol;
    }

private:
    OrvRegionText anchor_;
    AssociationPtr association_;
    OrvCountedPtr<VariableSymbol> anchorVariable_;
};
