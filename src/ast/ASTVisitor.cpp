#include "ast/ASTVisitor.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "support/ParseException.h"

ASTVisitor::~ASTVisitor() = default;
ASTNode::~ASTNode() = default;

void ASTVisitor::failDepth(const ASTNode& node) {
    throwLogged(
        ParseException("Expression is nested too deeply.", node.getLine(), node.getColumn()));
}

const std::string& anchorName(AnchorKind anchorKind) {
    static const std::array<std::string, 3> names = {std::string(anchorText(AnchorKind::THIS)),
                                                     std::string(anchorText(AnchorKind::CURRENT)),
                                                     std::string(anchorText(AnchorKind::MODEL))};
    const auto index = static_cast<std::size_t>(anchorKind);
    return names[index < names.size() ? index : 0];
}

void TupleExpressionNode::addElement(ExpressionPtr element) {
    const std::size_t size = elements_.size();
    if (size < pair_.size()) {
        pair_[size] = std::move(element);
        elements_ = std::span(pair_).first(size + 1);
        return;
    }
    if (all_.empty()) {
        all_.reserve(2 * pair_.size());
        std::move(pair_.begin(), pair_.end(), std::back_inserter(all_));
        elements_ = all_;
    }
    all_.push_back(std::move(element));
    elements_ = all_;
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
