// The walk over a syntax tree that looks for what decided.
#pragma once

#include <vector>

#include "why/Explanation.h"

namespace mmq {

/// Writes evidence about a node and about those below it that decided its value.
///
/// A visit explains a node whose value is in the evidence line that was added last. Variables are
/// bound, and lets entered, while what stands inside them is explained. Made on the stack.
class Explainer : private ASTVisitor {
public:
    explicit Explainer(Explanation& explanation)
        : explanation_(explanation), parts_(explanation.parts) {}

    /// Explains the value of a part.
    void explain(ExpressionNode& node);

private:
    void visitSpecification(SpecificationNode& node) override;
    void visitUniversalQuantifier(UniversalQuantifierNode& node) override;
    void visitExistentialQuantifier(ExistentialQuantifierNode& node) override;
    void visitBinaryExpression(BinaryExpressionNode& node) override;
    void visitUnaryExpression(UnaryExpressionNode& node) override;
    void visitRelationalExpression(RelationalExpressionNode& node) override;
    void visitApplicationExpression(ApplicationExpressionNode& node) override;
    void visitMapExpression(MapExpressionNode& node) override;
    void visitFilterExpression(FilterExpressionNode& node) override;
    void visitTraverseExpression(TraverseExpressionNode& node) override;
    void visitSortExpression(SortExpressionNode& node) override;
    void visitLetExpression(LetExpressionNode& node) override;
    void visitIfExpression(IfExpressionNode& node) override;
    void visitTupleExpression(TupleExpressionNode& node) override;
    void visitUnitExpression(UnitExpressionNode& /*node*/) override {}
    void visitRegExpConstant(RegExpConstantNode& /*node*/) override {}
    void visitStringConstant(StringConstantNode& /*node*/) override {}
    void visitIntegerConstant(IntegerConstantNode& /*node*/) override {}
    void visitRealConstant(RealConstantNode& /*node*/) override {}
    void visitBooleanConstant(BooleanConstantNode& /*node*/) override {}
    void visitPath(PathNode& node) override;
    void visitReferenceAssociation(ReferenceAssociationNode& /*node*/) override {}
    void visitDefinitionAssociation(DefinitionAssociationNode& /*node*/) override {}

    using Operands = std::vector<ExpressionNode*>;

    void explainOperands(const Operands& operands);
    void explainOperand(ExpressionNode& node);
    void explainDecision(const Operands& operands, bool decisive);
    void explainImplication(BinaryExpressionNode& node);
    void explainExtraction(ExpressionNode& collection);
    void explainQuantifier(QuantifierNode& node, bool decisive);
    void explainIteration(ExpressionNode& node, ExpressionNode& body, ExpressionNode& source);
    bool explainFailingBody(const MMObjectVarExpr& variable, ExpressionNode& body,
                            ExpressionNode& source);

    Explanation& explanation_;
    PartEvaluator& parts_;
};

}  // namespace mmq
