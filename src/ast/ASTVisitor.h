// The interface of everything that walks a syntax tree.
#pragma once

#include <cstdint>

#include "ast/AssociationNode.h"
#include "ast/ExpressionNode.h"
#include "support/OrvStack.h"

/// One operation for each concrete class of node. A visitor does not walk by itself: each
/// operation lets those children accept the visitor that it wants visited, in its own order.
class ASTVisitor {
public:
    ASTVisitor() : stackLimit_(OrvStack::limit()) {}
    ASTVisitor(const ASTVisitor&) = delete;
    ASTVisitor& operator=(const ASTVisitor&) = delete;
    virtual ~ASTVisitor();

    virtual void visitSpecification(SpecificationNode& node) = 0;
    virtual void visitUniversalQuantifier(UniversalQuantifierNode& node) = 0;
    virtual void visitExistentialQuantifier(ExistentialQuantifierNode& node) = 0;
    virtual void visitBinaryExpression(BinaryExpressionNode& node) = 0;
    virtual void visitUnaryExpression(UnaryExpressionNode& node) = 0;
    virtual void visitRelationalExpression(RelationalExpressionNode& node) = 0;
    virtual void visitApplicationExpression(ApplicationExpressionNode& node) = 0;
    virtual void visitMapExpression(MapExpressionNode& node) = 0;
    virtual void visitFilterExpression(FilterExpressionNode& node) = 0;
    virtual void visitTraverseExpression(TraverseExpressionNode& node) = 0;
    virtual void visitSortExpression(SortExpressionNode& node) = 0;
    virtual void visitLetExpression(LetExpressionNode& node) = 0;
    virtual void visitIfExpression(IfExpressionNode& node) = 0;
    virtual void visitTupleExpression(TupleExpressionNode& node) = 0;
    virtual void visitUnitExpression(UnitExpressionNode& node) = 0;
    virtual void visitRegExpConstant(RegExpConstantNode& node) = 0;
    virtual void visitStringConstant(StringConstantNode& node) = 0;
    virtual void visitIntegerConstant(IntegerConstantNode& node) = 0;
    virtual void visitRealConstant(RealConstantNode& node) = 0;
    virtual void visitBooleanConstant(BooleanConstantNode& node) = 0;
    virtual void visitPath(PathNode& node) = 0;
    virtual void visitReferenceAssociation(ReferenceAssociationNode& node) = 0;
    virtual void visitDefinitionAssociation(DefinitionAssociationNode& node) = 0;

protected:
    /// Throws the ParseException "Expression is nested too deeply." at `node` when the thread's
    /// stack has no room for visiting below it. Every visitor calls it for each node that it
    /// descends from; so a visitor belongs to the thread that made it.
    void checkVisitDepth(const ASTNode& node) const {
        if (OrvStack::isBelow(stackLimit_)) {
            failDepth(node);
        }
    }

private:
    [[noreturn]] static void failDepth(const ASTNode& node);

    std::uintptr_t stackLimit_;
};
