#include "ast/ASTVisitor.h"

#include "support/ParseException.h"

ASTVisitor::~ASTVisitor() = default;
ASTNode::~ASTNode() = default;

void ASTVisitor::failDepth(const ASTNode& node) {
    throwLogged(
        ParseException("Expression is nested too deeply.", node.getLine(), node.getColumn()));
}

void SpecificationNode::accept(ASTVisitor& visitor) { visitor.visitSpecification(*this); }
void UniversalQuantifierNode::accept(ASTVisitor& visitor) {
    visitor.visitUniversalQuantifier(*this);
}
void ExistentialQuantifierNode::accept(ASTVisitor& visitor) {
    visitor.visitExistentialQuantifier(*this);
}
void BinaryExpressionNode::accept(ASTVisitor& visitor) { visitor.visitBinaryExpression(*this); }
void UnaryExpressionNode::accept(ASTVisitor& visitor) { visitor.visitUnaryExpression(*this); }
void RelationalExpressionNode::accept(ASTVisitor& visitor) {
    visitor.visitRelationalExpression(*this);
}
void ApplicationExpressionNode::accept(ASTVisitor& visitor) {
    visitor.visitApplicationExpression(*this);
}
void MapExpressionNode::accept(ASTVisitor& visitor) { visitor.visitMapExpression(*this); }
void FilterExpressionNode::accept(ASTVisitor& visitor) { visitor.visitFilterExpression(*this); }
void TraverseExpressionNode::accept(ASTVisitor& visitor) { visitor.visitTraverseExpression(*this); }
void SortExpressionNode::accept(ASTVisitor& visitor) { visitor.visitSortExpression(*this); }
void LetExpressionNode::accept(ASTVisitor& visitor) { visitor.visitLetExpression(*this); }
void IfExpressionNode::accept(ASTVisitor& visitor) { visitor.visitIfExpression(*this); }
void TupleExpressionNode::accept(ASTVisitor& visitor) { visitor.visitTupleExpression(*this); }
void UnitExpressionNode::accept(ASTVisitor& visitor) { visitor.visitUnitExpression(*this); }
void RegExpConstantNode::accept(ASTVisitor& visitor) { visitor.visitRegExpConstant(*this); }
void StringConstantNode::accept(ASTVisitor& visitor) { visitor.visitStringConstant(*this); }
void IntegerConstantNode::accept(ASTVisitor& visitor) { visitor.visitIntegerConstant(*this); }
void RealConstantNode::accept(ASTVisitor& visitor) { visitor.visitRealConstant(*this); }
void BooleanConstantNode::accept(ASTVisitor& visitor) { visitor.visitBooleanConstant(*this); }
void PathNode::accept(ASTVisitor& visitor) { visitor.visitPath(*this); }
void ReferenceAssociationNode::accept(ASTVisitor& visitor) {
    visitor.visitReferenceAssociation(*this);
}
void DefinitionAssociationNode::accept(ASTVisitor& visitor) {
    visitor.visitDefinitionAssociation(*this);
}
