// Children are visited in the order in which the target's parts are made, which is not always that
// of the text: the body of an iteration comes before its source. What a child pushed is popped at
// once and narrowed to the kind that its place needs. The table of variables makes all uses of a
// symbol one target; the table of steps does the same for the steps of paths.
#include "codegen/CodeGenVisitor.h"

#include <utility>

#include "ast/LeftSpine.h"
#include "codegen/ResultKind.h"
#include "codegen/VariableCodeGenerator.h"
#include "fliodram/MMCollectionExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMIfExpr.h"
#include "fliodram/MMLetExpr.h"
#include "fliodram/MMOperatorExpr.h"
#include "fliodram/MMQuantifierExpr.h"
#include "fliodram/MMSortExpr.h"
#include "foundation/SameName.h"

namespace {

[[noreturn]] void fail(const char* message) {
    throwLogged(OrvAssertion("false", "CodeGenVisitor", 0, message));
}

// The root, an operator, and of each read the call, its tuple, the name and the path.
constexpr std::size_t nodesOfTwoReads = 10;

constexpr const char* wrongLetType = "Type is not appropriate for generating a let binding.";

}  // namespace

/// Looks object variables up from the node of a call.
class CodeGenVisitor::Retriever final : public ObjectVariableRetriever {
public:
    Retriever(CodeGenVisitor& visitor, const ASTNode& node) : visitor_(visitor), node_(node) {}

    OrvCyclicPtr<MMObjectVarExpr> retrieve(std::string_view name) override {
        return visitor_.objectVariable(name, node_);
    }

private:
    CodeGenVisitor& visitor_;
    const ASTNode& node_;
};

CodeGenVisitor::CodeGenVisitor(const OrvCountedPtr<NameSpace>& nameSpace,
                               const LetVariableUsage& usage, SourceMap* map)
    : nameSpace_(nameSpace),
      usage_(usage),
      map_(map),
      sharesReads_(map == nullptr && nameSpace->entries().size() >= nodesOfTwoReads) {}

// ---------------------------------------------------------------- results and variables

TargetPtr CodeGenVisitor::pop() {
    TargetPtr target = std::move(stack_.back());
    stack_.truncate(stack_.size() - 1);
    return target;
}

TargetPtr CodeGenVisitor::generateTarget(ASTNode& node) {
    checkVisitDepth(node);
    node.accept(*this);
    TargetPtr target = pop();
    if (node.getNodeKind() == NodeKind::expression) {
        note(node, node.getSpan(), *target);
    }
    return target;
}

// Pushes what the argument of a function stands for: nothing, one target, or those of a tuple.
// Texts and paths, which are most of a tree, are told apart without a call through it.
inline void CodeGenVisitor::visitOperands(ExpressionNode& node) {
    if (map_ != nullptr) {
        visitAndNote(node);
        return;
    }
    switch (node.getExpressionKind()) {
        case ExpressionKind::stringConstant:
            pushText(static_cast<StringConstantNode&>(node).getText());
            break;
        case ExpressionKind::path:
            visitPath(static_cast<PathNode&>(node));
            break;
        default:
            checkVisitDepth(node);
            node.accept(*this);
    }
}

void CodeGenVisitor::visitAndNote(ASTNode& node) {
    checkVisitDepth(node);
    const std::size_t height = stack_.size();
    node.accept(*this);
    if (stack_.size() == height + 1) {
        note(node, node.getSpan(), *stack_.back());
    }
}

template <class Binder, class Target>
OrvCyclicPtr<Target> CodeGenVisitor::boundVariable(const Binder& binder,
                                                   OrvCyclicPtr<Target> variable) {
    if (map_ != nullptr) {
        map_->addVariable(binder, *variable);
    }
    return variable;
}

const TargetPtr& CodeGenVisitor::targetOf(const OrvCountedPtr<VariableSymbol>& symbol) {
    TargetPtr& target = variables_[*symbol];
    if (!target) {
        target = symbol->getGenerator()->generate(symbol->getType(), symbol->getName());
    }
    return target;
}

OrvCyclicPtr<MMObjectVarExpr> CodeGenVisitor::objectVariable(
    const OrvCountedPtr<VariableSymbol>& symbol) {
    return narrow<MMObjectVarExpr>(targetOf(symbol));
}

OrvCyclicPtr<MMObjectVarExpr> CodeGenVisitor::objectVariable(std::string_view name,
                                                             const ASTNode& node) {
    const SymbolView found = nameSpace_->find(node, name, SymbolKind::variable);
    if (found.empty()) {
        fail("A variable that every expression has is not declared.");
    }
    return objectVariable(OrvConverter<VariableSymbol, Symbol>::toCounted(found.front()));
}

// The variable that a node binds as "current".
OrvCyclicPtr<MMObjectVarExpr> CodeGenVisitor::currentVariable(const ASTNode& node) {
    return boundVariable(node, objectVariable(anchorText(AnchorKind::CURRENT), node));
}

// The node as a function of the variable.
OrvCyclicPtr<MMValueAbsExpr> CodeGenVisitor::valueFunction(
    ASTNode& body, const OrvCyclicPtr<MMObjectVarExpr>& variable) {
    const OrvCyclicPtr<MMValueExpr> value = generate<MMValueExpr>(body);
    return OrvCyclicPtr<MMValueAbsExpr>(new MMValueAbsExpr(variable, value));
}

// ---------------------------------------------------------------- the whole expression

void CodeGenVisitor::visitSpecification(SpecificationNode& node) {
    const TargetPtr body = generateTarget(*node.getExpr());
    thisVariable_ =
        boundVariable(node, objectVariable(anchorText(AnchorKind::THIS), *node.getExpr()));
    result_ = body;
}

// ---------------------------------------------------------------- quantifiers and operators

template <class Quantifier>
void CodeGenVisitor::generateQuantifier(const QuantifierNode& node) {
    const auto variable = boundVariable(node, objectVariable(node.getBoundVariable()));
    const auto source = generate<MMObjectCollectionExpr>(*node.getSource());
    const auto predicate = generate<MMValueExpr>(*node.getExpr());
    push(TargetPtr(new Quantifier(source, predicate, variable)));
}

void CodeGenVisitor::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    generateQuantifier<MMAllExpr>(node);
}

void CodeGenVisitor::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    generateQuantifier<MMSomeExpr>(node);
}

namespace {

MMValueExpr* newBinary(BinaryOperator op, const OrvCyclicPtr<MMValueExpr>& left,
                       const OrvCyclicPtr<MMValueExpr>& right) {
    switch (op) {
        case BinaryOperator::IMPLIES:
            return new MMBooleanExpr(left, MM_IMPLIES, right);
        case BinaryOperator::AND:
            return new MMBooleanExpr(left, MM_AND, right);
        case BinaryOperator::OR:
            return new MMBooleanExpr(left, MM_OR, right);
        case BinaryOperator::ADD:
            return new MMArithmeticExpr(left, MM_ADD, right);
        case BinaryOperator::SUBTRACT:
            return new MMArithmeticExpr(left, MM_SUBTRACT, right);
        case BinaryOperator::MULTIPLY:
            return new MMArithmeticExpr(left, MM_MULTIPLY, right);
        case BinaryOperator::DIVIDE:
            return new MMArithmeticExpr(left, MM_DIVIDE, right);
    }
    fail("A binary expression has no known operator.");
}

}  // namespace

void CodeGenVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    auto left = generate<MMValueExpr>(*spine.innermostOperand());
    for (const BinaryExpressionNode& binary : spine) {
        const auto right = generate<MMValueExpr>(*binary.getRhs());
        left = OrvCyclicPtr<MMValueExpr>(newBinary(binary.getOp(), left, right));
        note(binary, binary.getSpan(), *left);
    }
    push(std::move(left));
}

void CodeGenVisitor::visitUnaryExpression(UnaryExpressionNode& node) {
    const auto operand = generate<MMValueExpr>(*node.getExpr());
    const OrvCyclicPtr<MMValueExpr> none;
    if (node.getOp() == UnaryOperator::MINUS) {
        push(TargetPtr(new MMArithmeticExpr(operand, MM_SUBTRACT, none)));
    } else {
        push(TargetPtr(new MMBooleanExpr(operand, MM_NOT, none)));
    }
}

// Replaces the targets on the stack, from the number `first` on, by the call of which they are the
// arguments. No generator comes back here, so that they stay where they are meanwhile.
[[gnu::always_inline]] inline void CodeGenVisitor::generateCall(const ResolvedFunctionNode& node,
                                                                std::size_t first) {
    const FunctionSymbol& function = *node.getResolvedFunction();
    Retriever retriever(*this, node);
    TargetPtr result;
    function.getGenerator()->generate(result, retriever, function.getName(), function.getType(),
                                      {stack_.begin() + first, stack_.end()});
    if (stack_.size() == first) {
        push(std::move(result));
        return;
    }
    swap(stack_[first], result);
    stack_.truncate(first + 1);
}

void CodeGenVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    const std::size_t first = stack_.size();
    visitOperands(*node.getLhs());
    visitOperands(*node.getRhs());
    generateCall(node, first);
}

namespace {

// The two operands of a call that reads an attribute of a variable; null for any other call.
const ExpressionPtr* operandsOfRead(const ApplicationExpressionNode& node) {
    const ExpressionNode& argument = *node.getExpr();
    if (argument.getExpressionKind() != ExpressionKind::tupleExpression ||
        !isSameName(node.getName(), "attribute")) {
        return nullptr;
    }
    const auto operands = static_cast<const TupleExpressionNode&>(argument).getElements();
    const bool isRead = operands.size() == 2 &&
                        operands[0]->getExpressionKind() == ExpressionKind::stringConstant &&
                        operands[1]->getExpressionKind() == ExpressionKind::path;
    return isRead ? operands.data() : nullptr;
}

// Whether all paths like this one are one target: the variable of an object.
bool isObjectVariable(const PathNode& path) {
    return !path.getAssociation() && !path.isAnchor(AnchorKind::MODEL) &&
           TypeExpression::isObject(path.getAnchorVariable()->getType());
}

}  // namespace

// Where a read has its place, with its target if it has one already; null for what is no read.
inline CodeGenVisitor::Read* CodeGenVisitor::placeOfRead(const ApplicationExpressionNode& node) {
    const ExpressionPtr* const operands = sharesReads_ ? operandsOfRead(node) : nullptr;
    if (operands == nullptr || !isObjectVariable(static_cast<const PathNode&>(*operands[1]))) {
        return nullptr;
    }
    const auto attribute = static_cast<const StringConstantNode&>(*operands[0]).getText();
    const auto& variable = *static_cast<const PathNode&>(*operands[1]).getAnchorVariable();
    for (Read& read : reads_) {
        if (read.variable == &variable && isSameName(read.attribute, attribute)) {
            return &read;
        }
    }
    return &addRead(attribute, variable);
}

// A read that is none of the last ones; it takes the place of the oldest.
CodeGenVisitor::Read& CodeGenVisitor::addRead(std::string_view attribute,
                                              const VariableSymbol& variable) {
    if (reads_.size() < mostReads) {
        reads_.append(attribute, &variable, TargetPtr());
        return reads_.back();
    }
    Read& oldest = reads_[nextRead_++ % mostReads];
    oldest = {attribute, &variable, TargetPtr()};
    return oldest;
}

// The argument pushes as many results as the function takes, in the order of the text.
void CodeGenVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    Read* const read = placeOfRead(node);
    if (read != nullptr && read->target) {
        push(TargetPtr(read->target));
        return;
    }
    const std::size_t first = stack_.size();
    visitOperands(*node.getExpr());
    generateCall(node, first);
    if (read != nullptr) {
        read->target = stack_.back();
    }
}

// ---------------------------------------------------------------- iterations

void CodeGenVisitor::visitMapExpression(MapExpressionNode& node) {
    const auto current = currentVariable(node);
    const auto function = valueFunction(*node.getFunction(), current);
    const auto source = generate<MMObjectCollectionExpr>(*node.getSource());
    push(TargetPtr(new MMMapExpr(function, source)));
}

void CodeGenVisitor::visitFilterExpression(FilterExpressionNode& node) {
    const auto current = currentVariable(node);
    const auto predicate = valueFunction(*node.getPredicate(), current);
    const auto source = generate<MMObjectCollectionExpr>(*node.getSource());
    push(TargetPtr(new MMFilterExpr(predicate, source)));
}

void CodeGenVisitor::visitTraverseExpression(TraverseExpressionNode& node) {
    const auto body = generate<MMObjectCollectionExpr>(*node.getPath());
    const auto current = currentVariable(node);
    const OrvCyclicPtr<MMObjectCollectionAbsExpr> function(
        new MMObjectCollectionAbsExpr(current, body));
    const auto source = generate<MMObjectCollectionExpr>(*node.getSource());
    push(TargetPtr(new MMTraverseExpr(function, source)));
}

// Each key binds its own variable: "current" looked up from the key's expression is another one
// where the key is itself an expression that declares it.
void CodeGenVisitor::visitSortExpression(SortExpressionNode& node) {
    const auto source = generate<MMObjectCollectionExpr>(*node.getSource());
    OrvCyclicPtr<MMSortExpr> sort(new MMSortExpr);
    sort->collection(source);
    for (const SortKey& key : node.getKeys()) {
        const auto current = boundVariable(key, objectVariable(key.getBoundVariable()));
        sort->key(valueFunction(*key.getExpr(), current), key.isAscending());
    }
    push(std::move(sort));
}

// ---------------------------------------------------------------- let and if

// A let whose variable is not used is its body: its value is not even generated.
void CodeGenVisitor::visitLetExpression(LetExpressionNode& node) {
    const OrvCountedPtr<VariableSymbol>& variable = node.getBoundVariable();
    if (!usage_.isUsed(*variable)) {
        visitOperands(*node.getExpr());
        return;
    }
    const TargetPtr binding = boundVariable(node, targetOf(variable));
    const TargetPtr source = generateTarget(*node.getSource());
    OrvSimplePtr<MMCachedExpr> cached = fillBinding(variable->getType(), binding, source);
    const TargetPtr body = generateTarget(*node.getExpr());
    generateLet(node.getResultType(), std::move(cached), body);
}

namespace {

template <class Binding, class Source>
OrvSimplePtr<MMCachedExpr> fill(const TargetPtr& binding, const TargetPtr& source) {
    const auto narrowed = narrow<Binding>(binding);
    narrowed->expr(lend<Source>(source));
    return OrvSimplePtr<MMCachedExpr>(narrowed.get());
}

}  // namespace

OrvSimplePtr<MMCachedExpr> CodeGenVisitor::fillBinding(const TypePtr& type,
                                                       const TargetPtr& binding,
                                                       const TargetPtr& source) {
    switch (resultKindOf(type)) {
        case ResultKind::value:
            return fill<MMValueBindingExpr, MMValueExpr>(binding, source);
        case ResultKind::object:
            return fill<MMObjectBindingExpr, MMObjectExpr>(binding, source);
        case ResultKind::objectCollection:
            return fill<MMObjectCollectionBindingExpr, MMObjectCollectionExpr>(binding, source);
        case ResultKind::stringCollection:
            return fill<MMStringCollectionBindingExpr, MMStringCollectionExpr>(binding, source);
        case ResultKind::none:
            break;
    }
    fail(wrongLetType);
}

void CodeGenVisitor::generateLet(const TypePtr& type, OrvSimplePtr<MMCachedExpr> binding,
                                 const TargetPtr& body) {
    switch (resultKindOf(type)) {
        case ResultKind::value:
            push(TargetPtr(new MMLetValueExpr(std::move(binding), lend<MMValueExpr>(body))));
            return;
        case ResultKind::object:
            push(TargetPtr(new MMLetObjectExpr(std::move(binding), lend<MMObjectExpr>(body))));
            return;
        case ResultKind::objectCollection:
            push(TargetPtr(new MMLetObjectCollectionExpr(std::move(binding),
                                                         lend<MMObjectCollectionExpr>(body))));
            return;
        case ResultKind::stringCollection:
            push(TargetPtr(new MMLetStringCollectionExpr(std::move(binding),
                                                         lend<MMStringCollectionExpr>(body))));
            return;
        case ResultKind::none:
            break;
    }
    fail(wrongLetType);
}

template <class If, class Branch>
void CodeGenVisitor::generateIf(const OrvCyclicPtr<MMValueExpr>& test, const TargetPtr& thenBranch,
                                const TargetPtr& elseBranch) {
    OrvCyclicPtr<If> conditional(new If);
    conditional->testExpr(test);
    conditional->thenExpr(lend<Branch>(thenBranch));
    conditional->elseExpr(lend<Branch>(elseBranch));
    push(std::move(conditional));
}

void CodeGenVisitor::visitIfExpression(IfExpressionNode& node) {
    const auto test = generate<MMValueExpr>(*node.getTest());
    const TargetPtr thenBranch = generateTarget(*node.getThen());
    const TargetPtr elseBranch = generateTarget(*node.getElse());
    switch (resultKindOf(node.getResultType())) {
        case ResultKind::value:
            generateIf<MMIfValueExpr, MMValueExpr>(test, thenBranch, elseBranch);
            return;
        case ResultKind::object:
            generateIf<MMIfObjectExpr, MMObjectExpr>(test, thenBranch, elseBranch);
            return;
        case ResultKind::objectCollection:
            generateIf<MMIfObjectCollectionExpr, MMObjectCollectionExpr>(test, thenBranch,
                                                                         elseBranch);
            return;
        case ResultKind::stringCollection:
            generateIf<MMIfStringCollectionExpr, MMStringCollectionExpr>(test, thenBranch,
                                                                         elseBranch);
            return;
        case ResultKind::none:
            break;
    }
    fail("Type is not appropriate for generating an if-expression.");
}

// ---------------------------------------------------------------- tuples and constants

void CodeGenVisitor::visitTupleExpression(TupleExpressionNode& node) {
    for (const ExpressionPtr& element : node.getElements()) {
        visitOperands(*element);
    }
}

void CodeGenVisitor::visitUnitExpression(UnitExpressionNode& /*node*/) {}

void CodeGenVisitor::pushText(std::string_view text) {
    push(TargetPtr(new MMConstantExpr(text.data(), text.size())));
}

void CodeGenVisitor::visitRegExpConstant(RegExpConstantNode& node) { pushText(node.getText()); }
void CodeGenVisitor::visitStringConstant(StringConstantNode& node) { pushText(node.getText()); }
void CodeGenVisitor::visitIntegerConstant(IntegerConstantNode& node) {
    push(TargetPtr(new MMConstantExpr(MMValue(node.getValue()))));
}
void CodeGenVisitor::visitRealConstant(RealConstantNode& node) {
    push(TargetPtr(new MMConstantExpr(MMValue(node.getValue()))));
}
void CodeGenVisitor::visitBooleanConstant(BooleanConstantNode& node) {
    push(TargetPtr(new MMConstantExpr(MMValue(node.getValue()))));
}

// ---------------------------------------------------------------- paths

void CodeGenVisitor::visitPath(PathNode& node) {
    TargetPtr anchor = targetOf(node.getAnchorVariable());
    if (node.isAnchor(AnchorKind::MODEL)) {
        anchor = TargetPtr(new MMModelExpr(lend<MMObjectExpr>(anchor)));
    }
    if (node.getAssociation()) {
        const auto object = narrow<MMObjectExpr>(std::move(anchor));
        const auto traversal = generate<MMAssociationTraversal>(*node.getAssociation());
        anchor = TargetPtr(new MMAssociationExpr(traversal, object));
    }
    push(std::move(anchor));
}

void CodeGenVisitor::visitReferenceAssociation(ReferenceAssociationNode& node) {
    DefinitionAssociationNode& step = node.getLabelSymbol()->getDeclaration();
    if (const auto& known = steps_[step]) {
        push(known);
    } else {
        push(generateTarget(step));
    }
}

// The traversal is known by its node before anything below it is generated.
void CodeGenVisitor::visitDefinitionAssociation(DefinitionAssociationNode& node) {
    OrvCyclicPtr<MMAssociationTraversal>& known = steps_[node];
    if (known) {
        push(known);
        return;
    }
    const OrvString name{node.getName()};
    OrvCyclicPtr<MMAssociationTraversal> traversal(
        new MMAssociationTraversal(name, node.getAddToResult()));
    known = traversal;
    note(node, node.getNameSpan(), *traversal);
    fillStep(node, traversal);
    push(std::move(traversal));
}

void CodeGenVisitor::fillStep(DefinitionAssociationNode& node,
                              const OrvCyclicPtr<MMAssociationTraversal>& traversal) {
    traversal->setDepthFirstEvaluation(node.getDepthFirstEvaluation());
    if (node.getCondition()) {
        const auto current = currentVariable(node);
        const auto condition = valueFunction(*node.getCondition(), current);
        traversal->setCondition(OrvConverter<MMValueAbsExpr, MMValueAbsExpr>::toCounted(condition));
    }
    if (node.getChild()) {
        traversal->setChild(generate<MMAssociationTraversal>(*node.getChild()));
    }
    if (node.getSibling()) {
        traversal->setSibling(generate<MMAssociationTraversal>(*node.getSibling()));
    }
}
