#include "names/VariableClasses.h"

#include "ast/LeftSpine.h"
#include "support/OrvStack.h"

namespace mmq {

namespace {

const ExpressionNode* argumentOfClass(const ExpressionNode& node) {
    if (node.getExpressionKind() != ExpressionKind::applicationExpression) {
        return nullptr;
    }
    const auto& application = static_cast<const ApplicationExpressionNode&>(node);
    return application.getName() == "class" ? application.getExpr().get() : nullptr;
}

const StringConstantNode* asText(const ExpressionNode& node) {
    return node.getExpressionKind() == ExpressionKind::stringConstant
               ? static_cast<const StringConstantNode*>(&node)
               : nullptr;
}

ClassTest classTestOf(const ExpressionNode& object, const ExpressionNode& text) {
    const ExpressionNode* const argument = argumentOfClass(object);
    const StringConstantNode* const name = asText(text);
    return argument != nullptr && name != nullptr ? ClassTest{argument, name} : ClassTest();
}

ClassSet united(ClassSet first, const ClassSet& second) {
    first.insert(second);
    return first;
}

}  // namespace

ClassTest classTestOf(const RelationalExpressionNode& node) {
    if (node.getOp() != RelationalOperator::EQUAL &&
        node.getOp() != RelationalOperator::NOT_EQUAL) {
        return {};
    }
    const ClassTest test = classTestOf(*node.getLhs(), *node.getRhs());
    return test ? test : classTestOf(*node.getRhs(), *node.getLhs());
}

VariableClasses::VariableClasses(const NameVocabulary& vocabulary, const ClassSet& classesOfThis)
    : vocabulary_(vocabulary) {
    push(nullptr, true, classesOfThis.isEmpty() ? vocabulary.allClasses() : classesOfThis);
}

void VariableClasses::push(const VariableSymbol* symbol, bool isCurrent, const ClassSet& classes) {
    variables_.push_back({symbol, isCurrent, classes});
}

std::optional<std::size_t> VariableClasses::find(const PathNode& path) const {
    if (path.isAnchor(AnchorKind::THIS)) {
        return 0;
    }
    const bool isCurrent = path.isAnchor(AnchorKind::CURRENT);
    for (std::size_t i = variables_.size(); i-- > 0;) {
        const Variable& variable = variables_[i];
        if (isCurrent
                ? variable.isCurrent
                : variable.symbol != nullptr && variable.symbol == path.getAnchorVariable().get()) {
            return i;
        }
    }
    return {};
}

const ClassSet& VariableClasses::classesOf(const PathNode& path) const {
    const std::optional<std::size_t> variable = find(path);
    return path.isAnchor(AnchorKind::MODEL) ? vocabulary_.rootClasses()
           : variable                       ? variables_[*variable].classes
                                            : vocabulary_.allClasses();
}

// The variable whose class is compared with a text.
std::optional<std::size_t> VariableClasses::testedBy(const RelationalExpressionNode& test) const {
    const ClassTest classTest = classTestOf(test);
    if (!classTest || classTest.object->getExpressionKind() != ExpressionKind::path) {
        return {};
    }
    const auto& path = static_cast<const PathNode&>(*classTest.object);
    return path.getAssociation() || path.isAnchor(AnchorKind::MODEL) ? std::nullopt : find(path);
}

std::set<std::size_t> VariableClasses::testedBy(ExpressionNode& condition) const {
    std::set<std::size_t> variables;
    collectTested(condition, variables);
    return variables;
}

void VariableClasses::collectTested(ExpressionNode& condition,
                                    std::set<std::size_t>& variables) const {
    if (!OrvStack::hasRoom()) {
        return;
    }
    const ExpressionKind kind = condition.getExpressionKind();
    if (kind == ExpressionKind::relationalExpression) {
        const auto variable = testedBy(static_cast<RelationalExpressionNode&>(condition));
        if (variable) {
            variables.insert(*variable);
        }
    } else if (kind == ExpressionKind::unaryExpression) {
        collectTested(*static_cast<UnaryExpressionNode&>(condition).getExpr(), variables);
    } else if (kind == ExpressionKind::binaryExpression) {
        const LeftSpine spine(static_cast<BinaryExpressionNode&>(condition));
        collectTested(*spine.innermostOperand(), variables);
        for (const BinaryExpressionNode& binary : spine) {
            collectTested(*binary.getRhs(), variables);
        }
    }
}

// Of what is never evaluated, nothing is known.
ConditionOutcome VariableClasses::judgeTest(const RelationalExpressionNode& test,
                                            std::size_t variable, const ClassSet& classes) const {
    const std::optional<ClassNumber> number =
        testedBy(test) == variable
            ? vocabulary_.findClass(std::string(classTestOf(test).className->getText()))
            : std::nullopt;
    if (!number) {
        return {classes, classes};
    }
    ConditionOutcome outcome{{}, classes};
    outcome.whenTrue.insert(*number);
    outcome.whenFalse.erase(*number);
    if (outcome.whenFalse.isEmpty()) {
        outcome.whenFalse = vocabulary_.allClasses();
    }
    if (test.getOp() == RelationalOperator::NOT_EQUAL) {
        std::swap(outcome.whenTrue, outcome.whenFalse);
    }
    return outcome;
}

ConditionOutcome VariableClasses::judge(ExpressionNode& condition, std::size_t variable,
                                        const ClassSet& classes) const {
    if (!OrvStack::hasRoom()) {
        return {classes, classes};
    }
    switch (condition.getExpressionKind()) {
        case ExpressionKind::relationalExpression:
            return judgeTest(static_cast<RelationalExpressionNode&>(condition), variable, classes);
        case ExpressionKind::unaryExpression: {
            const auto& unary = static_cast<UnaryExpressionNode&>(condition);
            ConditionOutcome outcome = judge(*unary.getExpr(), variable, classes);
            std::swap(outcome.whenTrue, outcome.whenFalse);
            return outcome;
        }
        case ExpressionKind::binaryExpression: {
            const LeftSpine spine(static_cast<BinaryExpressionNode&>(condition));
            ConditionOutcome outcome = judge(*spine.innermostOperand(), variable, classes);
            for (const BinaryExpressionNode& binary : spine) {
                outcome = combine(binary.getOp(), outcome, *binary.getRhs(), variable, classes);
            }
            return outcome;
        }
        default:
            return {classes, classes};
    }
}

// The right operand is only looked at where the left one does not decide.
ConditionOutcome VariableClasses::combine(BinaryOperator op, const ConditionOutcome& left,
                                          ExpressionNode& right, std::size_t variable,
                                          const ClassSet& classes) const {
    switch (op) {
        case BinaryOperator::AND: {
            const ConditionOutcome outcome = judge(right, variable, left.whenTrue);
            return {outcome.whenTrue, united(left.whenFalse, outcome.whenFalse)};
        }
        case BinaryOperator::OR: {
            const ConditionOutcome outcome = judge(right, variable, left.whenFalse);
            return {united(left.whenTrue, outcome.whenTrue), outcome.whenFalse};
        }
        case BinaryOperator::IMPLIES: {
            const ConditionOutcome outcome = judge(right, variable, left.whenTrue);
            return {united(left.whenFalse, outcome.whenTrue), outcome.whenFalse};
        }
        default:
            return {classes, classes};
    }
}

}  // namespace mmq
