// The construction of name spaces: the first walk over a parsed expression.
#pragma once

#include "ast/ASTVisitor.h"
#include "namespace/NameSpace.h"

/// Creates the scopes of an expression, declares in them what its constructs introduce, and
/// records each node's scope.
///
/// Quantifiers, lets, maps, filters, traverses, sort keys, paths and conditions open scopes; their
/// sources are looked up outside. Reports nothing: names that are not declared, or declared twice,
/// are for the type checker. A step that follows a group is visited once. Made on the stack for
/// one walk; the name space lives on.
class CreateNameSpaceVisitor final : public ASTVisitor {
public:
    /// `top` becomes the parent of the outermost scope.
    explicit CreateNameSpaceVisitor(const ScopePtr& top);

    /// The name space of the tree whose root accepted this visitor.
    const OrvCountedPtr<NameSpace>& getNameSpace() const { return nameSpace_; }

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
    void visitUnitExpression(UnitExpressionNode& node) override;
    void visitRegExpConstant(RegExpConstantNode& node) override;
    void visitStringConstant(StringConstantNode& node) override;
    void visitIntegerConstant(IntegerConstantNode& node) override;
    void visitRealConstant(RealConstantNode& node) override;
    void visitBooleanConstant(BooleanConstantNode& node) override;
    void visitPath(PathNode& node) override;
    void visitReferenceAssociation(ReferenceAssociationNode& node) override;
    void visitDefinitionAssociation(DefinitionAssociationNode& node) override;

private:
    void registerNode(ASTNode& node);
    void visitChild(const ExpressionPtr& child);
    void visitStep(const AssociationPtr& step);
    OrvCountedPtr<VariableSymbol> makeObjectVariable(OrvRegionText name) const;
    Scope& openScope(const char* name);
    void closeScope() { current_ = nameSpace_.get()->parentOf(current_); }
    void visitQuantifier(QuantifierNode& node, const char* scopeName);
    void visitIteration(ASTNode& node, const char* scopeName, const ExpressionPtr& source,
                        const ExpressionPtr& inner);

    ScopePtr top_;
    OrvMemoryRegion* region_;  // of the compilation; null outside one
    OrvCountedPtr<NameSpace> nameSpace_;
    NameSpace::ScopeNumber current_ = NameSpace::noScope;
};
