// The printed form of a syntax tree, for people who look at what the parser built.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

#include "ast/ASTVisitor.h"

/// Writes a tree to a stream as one line without a line end.
///
/// A node is written as its class, its position and its fields: `IntegerConstant@[1:5]( 42 )`.
/// Texts are written as they are, absent expressions as "<<null>>", absent steps and conditions as
/// "none". Annotations and the depth-first marker are not written. A step with several parents is
/// written below each of them. Left-leaning chains of any length are written in a loop; other
/// nesting that leaves no room on the stack throws a ParseException.
class ASTPrintVisitor : public ASTVisitor {
public:
    explicit ASTPrintVisitor(std::ostream& stream) : stream_(stream) {}

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
    void write(std::string_view text);
    void writeInteger(std::int32_t value);
    void beginNode(std::string_view tag, const ASTNode& node);
    void writeQuoted(std::string_view field, std::string_view text);
    void writeFlag(std::string_view field, bool flag);
    void writeExpression(std::string_view field, const ExpressionPtr& expression);
    void writeOptional(std::string_view field, ASTNode* node);
    void writeQuantifier(std::string_view tag, const QuantifierNode& node);
    void beginOperation(const BinaryExpressionNode& node);

    std::ostream& stream_;
};
