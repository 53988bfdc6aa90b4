// Every visit gives its node a type, which the parent takes before it visits the next child. A rule
// tests the types that it took, in the order in which it visited, and passes over the error type in
// silence; where it can form no type of its own it gives the error type. Overloads are chosen by
// equality of the domain with the type of the argument, and by nothing else.
#include "typecheck/ASTTypeCheckVisitor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ast/LeftSpine.h"
#include "foundation/OrvConverter.h"
#include "foundation/SameName.h"
#include "rw/RWCRegexp.h"
#include "types/TypeExprPrintVisitor.h"

namespace {

using Type = TypeExpression;

// Of the base types, those from string to object; and both collections.
bool isValueType(const TypePtr& type) {
    const Type::Structure structure = type->getStructure();
    return (structure >= Type::Structure::string && structure <= Type::Structure::object) ||
           structure >= Type::Structure::objectCollection;
}

// Whether a comparison is with a pattern that stands there as a text.
bool isPatternTest(const RelationalExpressionNode& node) {
    return (node.getOp() == RelationalOperator::REGEXP_EQUAL ||
            node.getOp() == RelationalOperator::REGEXP_NOT_EQUAL) &&
           node.getRhs()->getExpressionKind() == ExpressionKind::stringConstant;
}

bool isKeyType(const TypePtr& type) {
    return Type::isString(type) || Type::isBoolean(type) || Type::isInteger(type) ||
           Type::isReal(type);
}

bool isArithmeticType(const TypePtr& type) {
    return Type::isString(type) || Type::isInteger(type) || Type::isReal(type);
}

bool isNumericType(const TypePtr& type) { return Type::isInteger(type) || Type::isReal(type); }

const TEFunction& functionType(const Symbol& symbol) {
    return static_cast<const TEFunction&>(*symbol.getType());
}

// A message about a name.
std::string named(std::string_view before, std::string_view name, std::string_view behind) {
    return std::string(before).append(name).append(behind);
}

// The end of a message about an overload that does not exist: the overloads that do, a line each.
std::string listed(SymbolView candidates) {
    std::string text = "\nThese are the existing declarations:\n";
    for (; !candidates.empty(); candidates = candidates.rest()) {
        const SymbolPtr& candidate = candidates.front();
        text.append("\t").append(candidate->getName()).append(" : ");
        text += printedType(candidate->getType()) + "\n";
    }
    return text;
}

}  // namespace

ASTTypeCheckVisitor::ASTTypeCheckVisitor(ExprParserDialogs& dialogs,
                                         const OrvCountedPtr<NameSpace>& nameSpace,
                                         const TypeRequirement& requirement)
    : dialogs_(dialogs),
      nameSpace_(nameSpace),
      builtIns_(*TopLevelEnvironment::instance()),
      requirement_(requirement) {}

// ---------------------------------------------------------------- messages and types

// Counts an error, and shows it if it is one of the first; the message is built for no other.
template <class BuildMessage>
void ASTTypeCheckVisitor::report(const ASTNode& node, const BuildMessage& buildMessage) {
    if (++errorCount_ <= maximumShown) {
        dialogs_.showMessage(node.getLine(), node.getColumn(), "TypeChecker", buildMessage(),
                             ExprParserDialogs::Error, false);
    }
}

void ASTTypeCheckVisitor::reportError(const ASTNode& node, const std::string& message) {
    report(node, [&message] { return message; });
}

void ASTTypeCheckVisitor::reportType(const ASTNode& node, const std::string& message,
                                     const TypePtr& found) {
    report(node, [&] { return message + "; type found is {" + printedType(found) + "}."; });
}

void ASTTypeCheckVisitor::reportDisagreement(const ASTNode& node, const char* message,
                                             const char* firstName, const TypePtr& first,
                                             const char* secondName, const TypePtr& second) {
    report(node, [&] {
        return std::string(message) + "; types found are " + firstName + "={" + printedType(first) +
               "} and " + secondName + "={" + printedType(second) + "}.";
    });
}

const TypePtr& ASTTypeCheckVisitor::typeOf(ASTNode& node) {
    checkVisitDepth(node);
    node.accept(*this);
    return *result_;
}

// Texts and paths, which are most of a tree, are told apart without a call through it.
inline const TypePtr& ASTTypeCheckVisitor::typeOf(ExpressionNode& node) {
    switch (node.getExpressionKind()) {
        case ExpressionKind::stringConstant:
            return Type::stringType();
        case ExpressionKind::path:
            checkVisitDepth(node);
            visitPath(static_cast<PathNode&>(node));
            return *result_;
        default:
            return typeOf(static_cast<ASTNode&>(node));
    }
}

inline bool ASTTypeCheckVisitor::demand(const ASTNode& node, const TypePtr& type, TypeTest test,
                                        const char* message) {
    const bool isAccepted = test(type) || Type::isTypeError(type);
    if (!isAccepted) {
        reportType(node, message, type);
    }
    return isAccepted;
}

template <class Node>
inline const TypePtr& ASTTypeCheckVisitor::check(Node& node, TypeTest test, const char* message) {
    const TypePtr& type = typeOf(node);
    demand(node, type, test, message);
    return type;
}

// ---------------------------------------------------------------- the whole expression

void ASTTypeCheckVisitor::visitSpecification(SpecificationNode& node) {
    const TypePtr& type = typeOf(*node.getExpr());
    if (requirement_.check(type)) {
        give(type);
        return;
    }
    if (!Type::isTypeError(type)) {
        reportType(*node.getExpr(), "A complete expression must have type " + requirement_.text(),
                   type);
    }
    give(Type::typeError());
}

// ---------------------------------------------------------------- quantifiers and operators

void ASTTypeCheckVisitor::checkQuantifier(QuantifierNode& node) {
    check(*node.getSource(), &Type::isObjectCollection,
          "The source set of a quantifier must have type {object collection}");
    check(*node.getExpr(), &Type::isBoolean, "The body of a quantifier must have type {boolean}");
    give(Type::booleanType());
}

void ASTTypeCheckVisitor::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    checkQuantifier(node);
}

void ASTTypeCheckVisitor::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    checkQuantifier(node);
}

// Types a left-leaning chain from its innermost operand outward.
void ASTTypeCheckVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    const TypePtr* left = &typeOf(*spine.innermostOperand());
    for (const BinaryExpressionNode& binary : spine) {
        const TypePtr& right = typeOf(*binary.getRhs());
        left = &applyBinary(binary, *left, right);
    }
    give(*left);
}

const TypePtr& ASTTypeCheckVisitor::applyBinary(const BinaryExpressionNode& node,
                                                const TypePtr& left, const TypePtr& right) {
    if (node.getOp() > BinaryOperator::OR) {
        return checkArithmetic(node, left, right);
    }
    checkLogical(node, left, right);
    return Type::booleanType();
}

void ASTTypeCheckVisitor::checkLogical(const BinaryExpressionNode& node, const TypePtr& left,
                                       const TypePtr& right) {
    demand(*node.getLhs(), left, &Type::isBoolean,
           "The left-hand side of a logical operator must have type {boolean}");
    demand(*node.getRhs(), right, &Type::isBoolean,
           "The right-hand side of a logical operator must have type {boolean}");
}

const TypePtr& ASTTypeCheckVisitor::checkArithmetic(const BinaryExpressionNode& node,
                                                    const TypePtr& left, const TypePtr& right) {
    const bool isLeftFine = demand(*node.getLhs(), left, &isArithmeticType,
                                   "The left-hand side of an arithmetic operator must have type "
                                   "{string} or {integer} or {real}");
    const bool isRightFine = demand(*node.getRhs(), right, &isArithmeticType,
                                    "The right-hand side of an arithmetic operator must have type "
                                    "{string} or {integer} or {real}");
    if (!isLeftFine || !isRightFine || Type::isTypeError(left) || Type::isTypeError(right)) {
        return Type::typeError();
    }
    if (!Type::areEqual(left, right)) {
        reportDisagreement(node, "The types of the operands of an arithmetic operator must agree",
                           "lhs", left, "rhs", right);
        return Type::typeError();
    }
    if (Type::isString(left) && node.getOp() != BinaryOperator::ADD) {
        reportError(node, "The only arithmetic operator that takes a {string} is +.");
    }
    return left;
}

void ASTTypeCheckVisitor::visitUnaryExpression(UnaryExpressionNode& node) {
    if (node.getOp() == UnaryOperator::NOT) {
        check(*node.getExpr(), &Type::isBoolean,
              "The operand of unary not must have type {boolean}");
        give(Type::booleanType());
        return;
    }
    const TypePtr& operand = check(*node.getExpr(), &isNumericType,
                                   "The operand of unary minus must have type {integer} or {real}");
    give(isNumericType(operand) ? operand : Type::typeError());
}

void ASTTypeCheckVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    const TypePtr& left = typeOf(*node.getLhs());
    const TypePtr& right = typeOf(*node.getRhs());
    give(Type::booleanType());
    if (Type::isTypeError(left) || Type::isTypeError(right)) {
        return;
    }
    const std::array<const TypePtr*, 2> operands = {&left, &right};
    const SymbolView& candidates = builtIns_.functions(node.getOp());
    if (!resolve(node, candidates, operands)) {
        reportNoOverload(node, candidates, left, right);
    } else if (isPatternTest(node)) {
        const ExpressionNode& pattern = *node.getRhs();
        checkPatternWeight(pattern, static_cast<const StringConstantNode&>(pattern).getText());
    }
}

// The functions of a name. Most calls of an expression are of one function.
inline const SymbolView& ASTTypeCheckVisitor::functionsNamed(std::string_view name) {
    if (!isSameName(name, foundFunctions_.name)) {
        foundFunctions_ = {name, builtIns_.functions(name)};
    }
    return foundFunctions_.functions;
}

void ASTTypeCheckVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    const std::size_t first = arguments_.size();
    const bool isTyped = pushArguments(*node.getExpr());
    const SymbolView& candidates = functionsNamed(node.getName());
    give(Type::typeError());
    if (candidates.empty()) {
        reportError(node, named("Function ", node.getName(), " is not defined."));
    } else if (isTyped) {
        const Arguments arguments = argumentsFrom(first);
        if (resolve(node, candidates, arguments)) {
            give(functionType(*node.getResolvedFunction()).getRange());
        } else {
            reportNoOverload(node, candidates, arguments);
        }
    }
    arguments_.truncate(first);
}

// Binds a call to the overload for these arguments; returns false where there is none, as for a
// type that no function takes.
inline bool ASTTypeCheckVisitor::resolve(ResolvedFunctionNode& node, const SymbolView& candidates,
                                         Arguments arguments) {
    TypeStructures structures;
    for (const TypePtr* const argument : arguments) {
        structures.add(**argument);
    }
    for (SymbolView rest = candidates; structures.isExact() && !rest.empty(); rest = rest.rest()) {
        const auto& function = static_cast<const FunctionSymbol&>(*rest.front().get());
        if (function.getParameters() == structures) {
            node.setResolvedFunction(OrvConverter<FunctionSymbol, Symbol>::toCounted(rest.front()));
            return true;
        }
    }
    return false;
}

void ASTTypeCheckVisitor::reportNoOverload(const ApplicationExpressionNode& node,
                                           const SymbolView& candidates, Arguments arguments) {
    report(node, [&] {
        return named("There is no function ", node.getName(), " that takes {") +
               printedType(arguments.size() == 1 ? *arguments.front() : product(arguments)) + "}." +
               listed(candidates);
    });
}

void ASTTypeCheckVisitor::reportNoOverload(const RelationalExpressionNode& node,
                                           const SymbolView& candidates, const TypePtr& left,
                                           const TypePtr& right) {
    report(node, [&] {
        return std::string("There is no ") + TopLevelEnvironment::operatorName(node.getOp()) +
               " that takes lhs={" + printedType(left) + "} and rhs={" + printedType(right) + "}." +
               listed(candidates);
    });
}

// Pushes the type of the argument, or of each element of a tuple; returns false if one failed.
bool ASTTypeCheckVisitor::pushArguments(ExpressionNode& argument) {
    if (argument.getExpressionKind() == ExpressionKind::tupleExpression) {
        checkVisitDepth(argument);
        return pushElements(static_cast<TupleExpressionNode&>(argument));
    }
    const TypePtr& type = typeOf(argument);
    arguments_.append(&type);
    return !Type::isTypeError(type);
}

bool ASTTypeCheckVisitor::pushElements(TupleExpressionNode& tuple) {
    for (const ExpressionPtr& element : tuple.getElements()) {
        const TypePtr& type = typeOf(*element);
        arguments_.append(&type);
        if (Type::isTypeError(type)) {
            return false;
        }
    }
    return true;
}

// The types that were pushed from the one numbered `first` on.
ASTTypeCheckVisitor::Arguments ASTTypeCheckVisitor::argumentsFrom(std::size_t first) const {
    return {arguments_.begin() + first, arguments_.end()};
}

TypePtr ASTTypeCheckVisitor::product(Arguments types) {
    const OrvCountedPtr<TEProduct> product(new TEProduct);
    for (const TypePtr* type : types) {
        product->addComponent(*type);
    }
    return product;
}

// ---------------------------------------------------------------- iterations

void ASTTypeCheckVisitor::visitMapExpression(MapExpressionNode& node) {
    check(*node.getSource(), &Type::isObjectCollection,
          "The source set of a map must have type {object collection}");
    check(*node.getFunction(), &Type::isString,
          "The parameterized function of a map must have type {string}");
    give(Type::stringCollectionType());
}

void ASTTypeCheckVisitor::visitFilterExpression(FilterExpressionNode& node) {
    check(*node.getSource(), &Type::isObjectCollection,
          "The source set of a filter must have type {object collection}");
    check(*node.getPredicate(), &Type::isBoolean,
          "The parameterized predicate of a filter must have type {boolean}");
    give(Type::objectCollectionType());
}

void ASTTypeCheckVisitor::visitTraverseExpression(TraverseExpressionNode& node) {
    check(*node.getSource(), &Type::isObjectCollection,
          "The source set of a traverse must have type {object collection}");
    check(*node.getPath(), &Type::isObjectCollection,
          "The parameterized path of a traverse must have type {object collection}");
    give(Type::objectCollectionType());
}

void ASTTypeCheckVisitor::visitSortExpression(SortExpressionNode& node) {
    check(*node.getSource(), &Type::isObjectCollection,
          "The source set of a sort must have type {object collection}");
    for (const SortKey& key : node.getKeys()) {
        check(*key.getExpr(), &isKeyType,
              "The parameterized key of a sort must have type {boolean} or {string} or {integer} "
              "or {real}");
    }
    give(Type::objectCollectionType());
}

// ---------------------------------------------------------------- let, if, tuples

void ASTTypeCheckVisitor::visitLetExpression(LetExpressionNode& node) {
    const TypePtr& value = check(*node.getSource(), &isValueType,
                                 "The value of the bound variable in a let-expression must have "
                                 "type {boolean} or {string} or {integer} or {real} or {object} or "
                                 "{object collection} or {string collection}");
    if (isValueType(value)) {
        node.getBoundVariable()->setType(value);
    }
    const TypePtr& body = check(*node.getExpr(), &isValueType,
                                "The body of a let-expression must have type {boolean} or {string} "
                                "or {integer} or {real} or {object} or {object collection} or "
                                "{string collection}");
    if (isValueType(body)) {
        node.setResultType(body);
    }
    give(isValueType(body) ? body : Type::typeError());
}

void ASTTypeCheckVisitor::visitIfExpression(IfExpressionNode& node) {
    check(*node.getTest(), &Type::isBoolean,
          "The test of an if-expression must have type {boolean}");
    const TypePtr& thenType = check(*node.getThen(), &isValueType,
                                    "The then-branch of an if-expression must have type {boolean} "
                                    "or {string} or {integer} or {real} or {object} or {object "
                                    "collection} or {string collection}");
    const TypePtr& elseType = check(*node.getElse(), &isValueType,
                                    "The else-branch of an if-expression must have type {boolean} "
                                    "or {string} or {integer} or {real} or {object} or {object "
                                    "collection} or {string collection}");
    if (!isValueType(thenType) || !isValueType(elseType)) {
        give(Type::typeError());
    } else if (Type::areEqual(thenType, elseType)) {
        node.setResultType(thenType);
        give(thenType);
    } else {
        reportDisagreement(
            node, "The types of the then- and else-branches of an if-expression must agree", "then",
            thenType, "else", elseType);
        give(Type::typeError());
    }
}

void ASTTypeCheckVisitor::visitTupleExpression(TupleExpressionNode& node) {
    const std::size_t first = arguments_.size();
    if (pushElements(node)) {
        tupleTypes_.push_front(product(argumentsFrom(first)));
        give(tupleTypes_.front());
    } else {
        give(Type::typeError());
    }
    arguments_.truncate(first);
}

void ASTTypeCheckVisitor::visitUnitExpression(UnitExpressionNode& /*node*/) {
    give(Type::unitType());
}

// ---------------------------------------------------------------- constants

void ASTTypeCheckVisitor::visitRegExpConstant(RegExpConstantNode& node) {
    give(Type::typeError());
    if (!checkPatternWeight(node, node.getText())) {
        return;
    }
    const RWCRegexp::StatVal status = RWCRegexp(std::string(node.getText())).status();
    if (status == RWCRegexp::ok) {
        give(Type::regexpType());
    } else {
        reportError(node, status == RWCRegexp::tooLong ? "Regular expression is too long."
                                                       : "Regular expression is malformed.");
    }
}

// What constant patterns weigh above their bytes is bounded for all of them together, since a few
// bytes may keep the engine busy for 100 ms. One that is too heavy by itself costs nothing.
bool ASTTypeCheckVisitor::checkPatternWeight(const ExpressionNode& node, std::string_view pattern) {
    constexpr std::size_t mostTogether = 2 * RWCRegexp::heaviest;
    const std::size_t weight = RWCRegexp::weigh(pattern);
    const std::size_t excess = weight - std::min(weight, pattern.size());
    if (weight > RWCRegexp::heaviest) {
        return true;
    }
    if (excess > mostTogether - patternExcess_) {
        reportError(node, "Regular expressions are too long together.");
        return false;
    }
    patternExcess_ += excess;
    return true;
}

void ASTTypeCheckVisitor::visitStringConstant(StringConstantNode& /*node*/) {
    give(Type::stringType());
}
void ASTTypeCheckVisitor::visitIntegerConstant(IntegerConstantNode& /*node*/) {
    give(Type::integerType());
}
void ASTTypeCheckVisitor::visitRealConstant(RealConstantNode& /*node*/) { give(Type::realType()); }
void ASTTypeCheckVisitor::visitBooleanConstant(BooleanConstantNode& /*node*/) {
    give(Type::booleanType());
}

// ---------------------------------------------------------------- paths

void ASTTypeCheckVisitor::visitPath(PathNode& node) {
    const TypePtr& anchor = checkAnchor(node);
    if (!node.getAssociation()) {
        give(anchor);
        return;
    }
    demand(node, anchor, &Type::isObject, "The anchor of a path must have type {object}");
    check(*node.getAssociation(), &Type::isObjectCollection,
          "The associations of a path must have type {object collection}");
    give(Type::objectCollectionType());
}

// The variable that the anchor means; empty where there is none. Most paths of an expression, or of
// a condition in it, start at the same one.
const OrvCountedPtr<VariableSymbol>& ASTTypeCheckVisitor::variableOf(const PathNode& node) {
    const Scope* const scope = nameSpace_.get()->searchedScope(node);
    if (scope != foundVariable_.scope || !foundVariable_.variable ||
        !isSameName(node.getAnchor(), foundVariable_.name)) {
        foundVariable_ = {scope, node.getAnchor(), findVariable(node, scope)};
    }
    return foundVariable_.variable;
}

OrvCountedPtr<VariableSymbol> ASTTypeCheckVisitor::findVariable(const PathNode& node,
                                                                const Scope* scope) {
    const SymbolView found =
        scope != nullptr ? NameResolver::find(*scope, node.getAnchor(), SymbolKind::variable)
                         : SymbolView();
    if (!found.isSingle()) {
        reportError(node, named("Variable ", node.getAnchor(),
                                found.empty() ? " doesn't exist." : " is multiply defined."));
        return {};
    }
    return OrvConverter<VariableSymbol, Symbol>::toCounted(found.front());
}

// Binds the anchor to its variable; the type of what cannot be bound is the error type.
const TypePtr& ASTTypeCheckVisitor::checkAnchor(PathNode& node) {
    const OrvCountedPtr<VariableSymbol>& found = variableOf(node);
    if (!found) {
        return Type::typeError();
    }
    node.setAnchorVariable(found);
    const VariableSymbol& variable = *found.get();
    letVariableUsage_.recordUse(variable);
    demand(node, variable.getType(), &isValueType,
           "Variable must have type {boolean} or {string} or {integer} or {real} or {object} or "
           "{object collection} or {string collection}");
    return variable.getType();
}

// A label that is declared by a step which is not reached from here otherwise (one that stands
// behind a reference) has its step checked now: code generation will follow it.
void ASTTypeCheckVisitor::visitReferenceAssociation(ReferenceAssociationNode& node) {
    const SymbolView found = nameSpace_->find(node, node.getName(), SymbolKind::label);
    if (found.isSingle()) {
        const auto label = OrvConverter<LabelSymbol, Symbol>::toCounted(found.front());
        node.setLabelSymbol(label);
        typeOf(label->getDeclaration());
    } else {
        reportError(node, named("Label ", node.getName(),
                                found.empty() ? " doesn't exist." : " is multiply defined."));
    }
    give(Type::objectCollectionType());
}

void ASTTypeCheckVisitor::checkLabel(DefinitionAssociationNode& node) {
    const SymbolView found = nameSpace_->find(node, node.getLabel(), SymbolKind::label);
    if (found.isSingle()) {
        node.setLabelSymbol(OrvConverter<LabelSymbol, Symbol>::toCounted(found.front()));
    } else {
        reportError(node, named("Label ", node.getLabel(), " is multiply defined."));
    }
}

bool ASTTypeCheckVisitor::isFirstVisit(const DefinitionAssociationNode& node) {
    const auto entry = static_cast<std::size_t>(node.getScopeEntry());
    if (checkedSteps_.empty()) {
        checkedSteps_.resize(nameSpace_->entries().size());
    }
    const bool isFirst = entry >= checkedSteps_.size() || !checkedSteps_[entry];
    if (entry < checkedSteps_.size()) {
        checkedSteps_[entry] = true;
    }
    return isFirst;
}

void ASTTypeCheckVisitor::visitDefinitionAssociation(DefinitionAssociationNode& node) {
    if (isFirstVisit(node)) {
        if (!node.getLabel().empty()) {
            checkLabel(node);
        }
        if (node.getCondition()) {
            check(*node.getCondition(), &Type::isBoolean,
                  "The condition of an association component must have type {boolean}");
        }
        for (AssociationNode* next : {node.getChild().get(), node.getSibling().get()}) {
            if (next != nullptr) {
                check(*next, &Type::isObjectCollection,
                      "A component of a path must have type {object collection}");
            }
        }
    }
    give(Type::objectCollectionType());
}
