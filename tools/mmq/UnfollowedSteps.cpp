#include "UnfollowedSteps.h"

#include <algorithm>
#include <unordered_set>

#include "ast/ASTVisitor.h"
#include "ast/LeftSpine.h"
#include "namespace/Symbol.h"

namespace mmq {

namespace {

/// Visits everything, and of paths what is followed: behind a reference, the step that declares its
/// label. What stands below references is looked at when all that is known.
class StepVisitor : public ASTVisitor {
public:
    std::vector<const ASTNode*> unfollowed() const {
        std::vector<const ASTNode*> result;
        std::unordered_set<const ASTNode*> listed;
        std::vector<AssociationNode*> pending = behindReferences_;
        while (!pending.empty()) {
            AssociationNode* const step = pending.back();
            pending.pop_back();
            if (step != nullptr && followed_.count(step) == 0 && listed.insert(step).second) {
                result.push_back(step);
                pending.push_back(step->getChild().get());
                pending.push_back(step->getSibling().get());
            }
        }
        std::stable_sort(result.begin(), result.end(), [](const auto* left, const auto* right) {
            return std::make_pair(left->getLine(), left->getColumn()) <
                   std::make_pair(right->getLine(), right->getColumn());
        });
        return result;
    }

    void visitSpecification(SpecificationNode& node) override { visit(node.getExpr()); }
    void visitUniversalQuantifier(UniversalQuantifierNode& node) override {
        visit(node.getSource());
        visit(node.getExpr());
    }
    void visitExistentialQuantifier(ExistentialQuantifierNode& node) override {
        visit(node.getSource());
        visit(node.getExpr());
    }
    void visitBinaryExpression(BinaryExpressionNode& node) override {
        const LeftSpine spine(node);
        visit(spine.innermostOperand());
        for (const BinaryExpressionNode& binary : spine) {
            visit(binary.getRhs());
        }
    }
    void visitUnaryExpression(UnaryExpressionNode& node) override { visit(node.getExpr()); }
    void visitRelationalExpression(RelationalExpressionNode& node) override {
        visit(node.getLhs());
        visit(node.getRhs());
    }
    void visitApplicationExpression(ApplicationExpressionNode& node) override {
        visit(node.getExpr());
    }
    void visitMapExpression(MapExpressionNode& node) override {
        visit(node.getFunction());
        visit(node.getSource());
    }
    void visitFilterExpression(FilterExpressionNode& node) override {
        visit(node.getPredicate());
        visit(node.getSource());
    }
    void visitTraverseExpression(TraverseExpressionNode& node) override {
        visit(node.getPath());
        visit(node.getSource());
    }
    void visitSortExpression(SortExpressionNode& node) override {
        for (const SortKey& key : node.getKeys()) {
            visit(key.getExpr());
        }
        visit(node.getSource());
    }
    void visitLetExpression(LetExpressionNode& node) override {
        visit(node.getSource());
        visit(node.getExpr());
    }
    void visitIfExpression(IfExpressionNode& node) override {
        visit(node.getTest());
        visit(node.getThen());
        visit(node.getElse());
    }
    void visitTupleExpression(TupleExpressionNode& node) override {
        for (const ExpressionPtr& element : node.getElements()) {
            visit(element);
        }
    }
    void visitUnitExpression(UnitExpressionNode& /*node*/) override {}
    void visitRegExpConstant(RegExpConstantNode& /*node*/) override {}
    void visitStringConstant(StringConstantNode& /*node*/) override {}
    void visitIntegerConstant(IntegerConstantNode& /*node*/) override {}
    void visitRealConstant(RealConstantNode& /*node*/) override {}
    void visitBooleanConstant(BooleanConstantNode& /*node*/) override {}
    void visitPath(PathNode& node) override { visit(node.getAssociation()); }

    void visitReferenceAssociation(ReferenceAssociationNode& node) override {
        if (!followed_.insert(&node).second) {
            return;
        }
        behindReferences_.push_back(node.getChild().get());
        behindReferences_.push_back(node.getSibling().get());
        if (node.getLabelSymbol()) {
            DefinitionAssociationNode& declaration = node.getLabelSymbol()->getDeclaration();
            checkVisitDepth(declaration);
            declaration.accept(*this);
        }
    }
    void visitDefinitionAssociation(DefinitionAssociationNode& node) override {
        if (followed_.insert(&node).second) {
            visit(node.getCondition());
            visit(node.getChild());
            visit(node.getSibling());
        }
    }

private:
    template <class Node>
    void visit(const OrvCountedPtr<Node>& node) {
        if (node) {
            checkVisitDepth(*node);
            node->accept(*this);
        }
    }

    std::unordered_set<const ASTNode*> followed_;
    std::vector<AssociationNode*> behindReferences_;
};

}  // namespace

std::vector<const ASTNode*> findUnfollowedSteps(SpecificationNode& root) {
    StepVisitor visitor;
    root.accept(visitor);
    return visitor.unfollowed();
}

}  // namespace mmq
