// Each operation registers its node with the scope that is current there, and lets its children
// accept the visitor inside the scope that it opens for them. Before and after a walk there is no
// current scope.
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

// The name of a predefined anchor as that of a symbol.
OrvRegionText anchor(AnchorKind anchorKind) {
    return OrvRegionText::constant(anchorText(anchorKind));
}

}  // namespace

CreateNameSpaceVisitor::CreateNameSpaceVisitor(const ScopePtr& top)
    : top_(top),
      region_(OrvCompilationMemory::nodes()),
      nameSpace_(new (region_) NameSpace(region_)) {}

VariablePtr CreateNameSpaceVisitor::makeObjectVariable(OrvRegionText name) const {
    return VariablePtr(new (region_) VariableSymbol(std::move(name), TypeExpression::objectType(),
                                                    sharedGenerator<ObjectVarGenerator>()));
}

void CreateNameSpaceVisitor::registerNode(ASTNode& node) {
    checkVisitDepth(node);
    nameSpace_.get()->setFirstScope(node, current_);
}

// Paths and constants, which are most of a tree, are told apart without a call through it.
void CreateNameSpaceVisitor::visitChild(const ExpressionPtr& child) {
    if (!child) {
        return;
    }
    const ExpressionKind kind = child->getExpressionKind();
    if (kind == ExpressionKind::path) {
        visitPath(static_cast<PathNode&>(*child));
    } else if (kind >= ExpressionKind::unitExpression) {
        registerNode(*child);
    } else {
        child->accept(*this);
    }
}

void CreateNameSpaceVisitor::visitStep(const AssociationPtr& step) {
    if (step) {
        step->accept(*this);
    }
}

Scope& CreateNameSpaceVisitor::openScope(const char* name) {
    Scope* const scope = new (region_)
        Scope(name, current_ == NameSpace::noScope ? top_ : nameSpace_->scope(current_), region_);
    current_ = nameSpace_->addScope(ScopePtr(scope), current_);
    return *scope;
}

void CreateNameSpaceVisitor::visitSpecification(SpecificationNode& node) {
    const SymbolPtr object = makeObjectVariable(anchor(AnchorKind::THIS));
    Scope& scope = openScope("Specification");
    for (const AnchorKind anchor : {AnchorKind::CURRENT, AnchorKind::MODEL, AnchorKind::THIS}) {
        scope.insert(anchorText(anchor), object);
    }
    registerNode(node);
    visitChild(node.getExpr());
    closeScope();
}

void CreateNameSpaceVisitor::visitQuantifier(QuantifierNode& node, const char* scopeName) {
    checkVisitDepth(node);
    visitChild(node.getSource());
    const VariablePtr variable = makeObjectVariable({region_, node.getName()});
    node.setBoundVariable(variable);
    Scope& scope = openScope(scopeName);
    scope.insert(variable->getName(), variable);
    scope.insert(anchorText(AnchorKind::CURRENT), variable);
    registerNode(node);
    visitChild(node.getExpr());
    closeScope();
}

void CreateNameSpaceVisitor::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    visitQuantifier(node, "Universal");
}

void CreateNameSpaceVisitor::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    visitQuantifier(node, "Existential");
}

void CreateNameSpaceVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    checkVisitDepth(node);
    const LeftSpine spine(node);
    visitChild(spine.innermostOperand());
    for (BinaryExpressionNode& binary : spine) {
        registerNode(binary);
        visitChild(binary.getRhs());
    }
}

void CreateNameSpaceVisitor::visitUnaryExpression(UnaryExpressionNode& node) {
    registerNode(node);
    visitChild(node.getExpr());
}

void CreateNameSpaceVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    registerNode(node);
    visitChild(node.getLhs());
    visitChild(node.getRhs());
}

void CreateNameSpaceVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    registerNode(node);
    visitChild(node.getExpr());
}

void CreateNameSpaceVisitor::visitIteration(ASTNode& node, const char* scopeName,
                                            const ExpressionPtr& source,
                                            const ExpressionPtr& inner) {
    checkVisitDepth(node);
    visitChild(source);
    openScope(scopeName).insert(anchorText(AnchorKind::CURRENT),
                                makeObjectVariable(anchor(AnchorKind::CURRENT)));
    registerNode(node);
    visitChild(inner);
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
    visitChild(node.getSource());
    for (SortKey& key : node.getKeys()) {
        key.setBoundVariable(makeObjectVariable(anchor(AnchorKind::CURRENT)));
        openScope("SortKey").insert(anchorText(AnchorKind::CURRENT), key.getBoundVariable());
        visitChild(key.getExpr());
        closeScope();
    }
}

// The bound value is looked up outside: a let-bound name is not visible in its own definition.
void CreateNameSpaceVisitor::visitLetExpression(LetExpressionNode& node) {
    checkVisitDepth(node);
    visitChild(node.getSource());
    const VariablePtr variable(new (region_) VariableSymbol(OrvRegionText(region_, node.getName()),
                                                            TypeExpression::typeError(),
                                                            sharedGenerator<LetVarGenerator>()));
    node.setBoundVariable(variable);
    openScope("Let").insert(variable->getName(), variable);
    registerNode(node);
    visitChild(node.getExpr());
    closeScope();
}

void CreateNameSpaceVisitor::visitIfExpression(IfExpressionNode& node) {
    registerNode(node);
    visitChild(node.getTest());
    visitChild(node.getThen());
    visitChild(node.getElse());
}

void CreateNameSpaceVisitor::visitTupleExpression(TupleExpressionNode& node) {
    registerNode(node);
    for (const ExpressionPtr& element : node.getElements()) {
        visitChild(element);
    }
}

void CreateNameSpaceVisitor::visitUnitExpression(UnitExpressionNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitRegExpConstant(RegExpConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitStringConstant(StringConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitIntegerConstant(IntegerConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitRealConstant(RealConstantNode& node) { registerNode(node); }
void CreateNameSpaceVisitor::visitBooleanConstant(BooleanConstantNode& node) { registerNode(node); }

// All labels of the path, wherever in its steps they stand, are declared in the path's scope. One
// that nothing stands around is made at once, since look-ups go on from there to the outermost.
void CreateNameSpaceVisitor::visitPath(PathNode& node) {
    const NameSpace::ScopeNumber enclosing = current_;
    if (enclosing == NameSpace::noScope) {
        openScope(NameSpace::pathScopeName);
    } else {
        current_ = nameSpace_.get()->addPathScope(enclosing);
    }
    registerNode(node);
    visitStep(node.getAssociation());
    current_ = enclosing;
}

void CreateNameSpaceVisitor::visitReferenceAssociation(ReferenceAssociationNode& node) {
    if (nameSpace_->hasScope(node)) {
        return;
    }
    registerNode(node);
    visitStep(node.getChild());
    visitStep(node.getSibling());
}

void CreateNameSpaceVisitor::visitDefinitionAssociation(DefinitionAssociationNode& node) {
    if (nameSpace_->hasScope(node)) {
        return;
    }
    if (!node.getLabel().empty()) {
        const SymbolPtr label(new (region_) LabelSymbol({region_, node.getLabel()}, node));
        nameSpace_->scope(current_)->insert(label->getName(), label);
    }
    if (node.getCondition()) {
        openScope("DefinitionAssociation")
            .insert(anchorText(AnchorKind::CURRENT),
                    makeObjectVariable(anchor(AnchorKind::CURRENT)));
        registerNode(node);
        visitChild(node.getCondition());
        closeScope();
    } else {
        registerNode(node);
    }
    visitStep(node.getChild());
    visitStep(node.getSibling());
}
