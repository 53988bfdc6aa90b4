// Each operation registers its node with the scope that is current there, and lets its children
// accept the visitor inside the scope that it opens for them. The current scope is the top of a
// stack, which is empty before and after a walk.
#include "namespace/CreateNameSpaceVisitor.h"

#include "ast/LeftSpine.h"
#include "codegen/VariableCodeGenerator.h"
#include "foundation/OrvPinnedRegistry.h"

namespace {

using VariableGeneratorPtr = OrvCountedPtr<VariableCodeGenerator>;
using VariablePtr = OrvCountedPtr<VariableSymbol>;

// Generators have no state: all variables share them.
template <class Generator>
const VariableGeneratorPtr& sharedGenerator() {
    static const VariableGeneratorPtr generator =
        OrvPinnedRegistry::instance().pin(VariableGeneratorPtr(new Generator));
    return generator;
}

VariablePtr makeObjectVariable(const std::string& name) {
    return VariablePtr(new VariableSymbol(name, TypeExpression::objectType(),
                                          sharedGenerator<ObjectVarGenerator>()));
}

}  // namespace

CreateNameSpaceVisitor::CreateNameSpaceVisitor(const ScopePtr& top)
    : top_(top), nameSpace_(new NameSpace) {
    constexpr std::size_t usualDepth = 16;
    scopes_.reserve(usualDepth);
}

void CreateNameSpaceVisitor::registerNode(ASTNode& node) {
    checkVisitDepth(node);
    nameSpace_->setScope(node, scopes_.back());
}

void CreateNameSpaceVisitor::visitChild(ASTNode* child) {
    if (child != nullptr) {
        child->accept(*this);
    }
}

Scope& CreateNameSpaceVisitor::openScope(const std::string& name) {
    const ScopePtr scope(new Scope(name));
    scope->setParent(scopes_.empty() ? top_ : nameSpace_->scopes()[scopes_.back()]);
    scopes_.push_back(nameSpace_->addScope(scope));
    return *scope;
}

void CreateNameSpaceVisitor::closeScope() { scopes_.pop_back(); }

void CreateNameSpaceVisitor::visitSpecification(SpecificationNode& node) {
    const VariablePtr object = makeObjectVariable(anchorName(AnchorKind::THIS));
    Scope& scope = openScope("Specification");
    for (const AnchorKind anchor : {AnchorKind::THIS, AnchorKind::CURRENT, AnchorKind::MODEL}) {
        scope.insert(anchorName(anchor), object);
    }
    registerNode(node);
    visitChild(node.getExpr().get());
    closeScope();
}

void CreateNameSpaceVisitor::visitQuantifier(QuantifierNode& node, const std::string& scopeName) {
    checkVisitDepth(node);
    visitChild(node.getSource().get());
    const VariablePtr variable = makeObjectVariable(node.getName());
    node.setBoundVariable(variable);
    Scope& scope = openScope(scopeName);
    scope.insert(node.getName(), variable);
    scope.insert(anchorName(AnchorKind::CURRENT), variable);
    registerNode(node);
    visitChild(node.getExpr().get());
    closeScope();
}

void CreateNameSpaceVisitor::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    visitQuantifier(node, "Universal");
}

void CreateNameSpaceVisitor::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    visitQuantifier(node, "Existential");
}

void CreateNameSpaceVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    for (BinaryExpressionNode* binary : spine) {
        registerNode(*binary);
    }
    visitChild(spine.innermostOperand().get());
    for (auto binary = spine.rbegin(); binary != spine.rend(); ++binary) {
        visitChild((*binary)->getRhs().get());
    }
}

void CreateNameSpaceVisitor::visitUnaryExpression(UnaryExpressionNode& node) {
    registerNode(node);
    visitChild(node.getExpr().get());
}

void CreateNameSpaceVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    registerNode(node);
    visitChild(node.getLhs().get());
    visitChild(node.getRhs().get());
}

void CreateNameSpaceVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    registerNode(node);
    visitChild(node.getExpr().get());
}

void CreateNameSpaceVisitor::visitIteration(ASTNode& node, const std::string& scopeName,
                                            const ExpressionPtr& source,
                                            const ExpressionPtr& inner) {
    checkVisitDepth(node);
    visitChild(source.get());
    const std::string& current = anchorName(AnchorKind::CURRENT);
    openScope(scopeName).insert(current, makeObjectVariable(current));
    registerNode(node);
    visitChild(inner.get());
    closeScope();
}

void CreateNameSpaceVisitor::visitMapExpression(MapExpressionNode& node) {
    visitIteration(node, "Map", node.getSource(), node.getFunction());
}

void CreateNameSpaceVisitor::visitFilterExpression(FilterExpressionNode& node) {
    visitIteration(node, "Filter", node.getSource(), node.getPredicate());
}

void CreateNameSpaceVisitor::visitTraverseExpression(TraverseExpressionNode& node) {
    visitIteration(node, "Traverse", node.getSource(), node.getPath());
}

// Each key has a scope and a variable of its own.
void CreateNameSpaceVisitor::visitSortExpression(SortExpressionNode& node) {
    registerNode(node);
    visitChild(node.getSource().get());
    for (SortKey& key : node.getKeys()) {
        const std::string& current = anchorName(AnchorKind::CURRENT);
        key.setBoundVariable(makeObjectVariable(current));
        openScope("SortKey").insert(current, key.getBoundVariable());
        visitChild(key.getExpr().get());
        closeScope();
    }
}

// The bound value is looked up outside: a let-bound name is not visible in its own definition.
void CreateNameSpaceVisitor::visitLetExpression(LetExpressionNode& node) {
    checkVisitDepth(node);
    visitChild(node.getSource().get());
    const VariablePtr variable(new VariableSymbol(node.getName(), TypeExpression::typeError(),
                                                  sharedGenerator<LetVarGenerator>()));
    node.setBoundVariable(variable);
    openScope("Let").insert(node.getName(), variable);
    registerNode(node);
    visitChild(node.getExpr().get());
    closeScope();
}

void CreateNameSpaceVisitor::visitIfExpression(IfExpressionNode& node) {
    registerNode(node);
    visitChild(node.getTest().get());
    visitChild(node.getThen().get());
    visitChild(node.getElse().get());
}

void CreateNameSpaceVisitor::visitTupleExpression(TupleExpressionNode& node) {
    registerNode(node);
    for (const ExpressionPtr& element : node.getElements()) {
        visitChild(element.get());
    }
}

void CreateNameSpaceVisitor::visitUnitExpression(UnitExpressionNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitRegExpConstant(RegExpConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitStringConstant(StringConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitIntegerConstant(IntegerConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitRealConstant(RealConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitBooleanConstant(BooleanConstantNode& node) { registerNode(node); }

// All labels of the path, wherever in its steps they stand, are declared in the path's scope.
void CreateNameSpaceVisitor::visitPath(PathNode& node) {
    openScope("Path");
    registerNode(node);
    visitChild(node.getAssociation().get());
    closeScope();
}

void CreateNameSpaceVisitor::visitReferenceAssociation(ReferenceAssociationNode& node) {
    if (nameSpace_->hasScope(node)) {
        return;
    }
    registerNode(node);
    visitChild(node.getChild().get());
    visitChild(node.getSibling().get());
}

void CreateNameSpaceVisitor::visitDefinitionAssociation(DefinitionAssociationNode& node) {
    if (nameSpace_->hasScope(node)) {
        return;
    }
    if (!node.getLabel().empty()) {
        nameSpace_->scopes()[scopes_.back()]->insert(
            node.getLabel(), SymbolPtr(new LabelSymbol(node.getLabel(), node)));
    }
    if (node.getCondition()) {
        const std::string& current = anchorName(AnchorKind::CURRENT);
        openScope("DefinitionAssociation").insert(current, makeObjectVariable(current));
        registerNode(node);
        visitChild(node.getCondition().get());
        closeScope();
    } else {
        registerNode(node);
    }
    visitChild(node.getChild().get());
    visitChild(node.getSibling().get());
}
