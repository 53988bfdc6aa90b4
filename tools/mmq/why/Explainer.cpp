// Each visit finds what decided by evaluating operands in the order of evaluation, and goes on
// there. What fails is explained alike: by the operand that fails, or by what all operands were.
// Lets and conditionals have no line of their own, since that of their body or branch says the
// same.
#include "why/Explainer.h"

#include <algorithm>

#include "ast/LeftSpine.h"
#include "why/DeadEnds.h"
#include "why/ElementExplainer.h"

namespace mmq {

namespace {

bool isTransparent(const ExpressionNode& node) {
    return node.getExpressionKind() == ExpressionKind::letExpression ||
           node.getExpressionKind() == ExpressionKind::ifExpression;
}

// Constants stand in the text as they are, and what is not written needs no explanation.
bool isEvident(const ExpressionNode& node) {
    const ExpressionKind kind = node.getExpressionKind();
    const SourceSpan& span = node.getSpan();
    return (kind >= ExpressionKind::unitExpression && kind <= ExpressionKind::booleanConstant) ||
           span.offset == span.endOffset;
}

const PathNode* asVariable(const ExpressionNode& node) {
    const auto* const path = node.getExpressionKind() == ExpressionKind::path
                                 ? static_cast<const PathNode*>(&node)
                                 : nullptr;
    return path != nullptr && !path->getAssociation() ? path : nullptr;
}

bool isLogical(BinaryOperator op) { return op <= BinaryOperator::OR; }

bool isSameLevel(BinaryOperator left, BinaryOperator right) {
    return left == right ||
           (!isLogical(left) && !isLogical(right) &&
            (left >= BinaryOperator::MULTIPLY) == (right >= BinaryOperator::MULTIPLY));
}

// The operands of a chain of operators that bind alike, such as a + b - c.
std::vector<ExpressionNode*> chainOperands(BinaryExpressionNode& top) {
    const LeftSpine spine(top);
    std::vector<ExpressionNode*> operands = {spine.innermostOperand().get()};
    for (BinaryExpressionNode& node : spine) {
        if (isSameLevel(node.getOp(), top.getOp())) {
            operands.push_back(node.getRhs().get());
        } else {
            operands = {&node};
        }
    }
    return operands;
}

std::vector<ExpressionNode*> argumentsOf(const ApplicationExpressionNode& node) {
    ExpressionNode& argument = *node.getExpr();
    if (argument.getExpressionKind() != ExpressionKind::tupleExpression) {
        return {&argument};
    }
    std::vector<ExpressionNode*> arguments;
    for (const ExpressionPtr& element : static_cast<TupleExpressionNode&>(argument).getElements()) {
        arguments.push_back(element.get());
    }
    return arguments;
}

bool isEmptyText(const PartValue& value) {
    const MMValue* const text = std::get_if<MMValue>(&value);
    return text != nullptr && text->getKind() == MMValue::Kind::text && text->getText().empty();
}

}  // namespace

// ---------------------------------------------------------------- values

void Explainer::explain(ExpressionNode& node) {
    if (explanation_.hasRoom() &&
        (isTransparent(node) || explanation_.add({node.getSpan(), parts_.evaluate(node)}))) {
        node.accept(*this);
    }
}

void Explainer::explainOperand(ExpressionNode& node) {
    const PathNode* const variable = asVariable(node);
    const bool isKnown = variable != nullptr && explanation_.letOf(*variable) == nullptr;
    if (!isKnown && !isEvident(node)) {
        explain(node);
    }
}

// The first operand that fails, or else all of them.
void Explainer::explainOperands(const Operands& operands) {
    const bool isFailed = explanation_.isFailing();
    const auto failing = std::find_if(operands.begin(), operands.end(), [&](ExpressionNode* node) {
        return isFailed && isFailure(parts_.evaluate(*node));
    });
    if (failing != operands.end()) {
        explain(**failing);
        return;
    }
    for (ExpressionNode* operand : operands) {
        explainOperand(*operand);
    }
}

// The first operand with the value that decides, or that fails; else all of them.
void Explainer::explainDecision(const Operands& operands, bool decisive) {
    for (ExpressionNode* operand : operands) {
        const PartValue value = parts_.evaluate(*operand);
        if (isFailure(value) || isBoolean(value, decisive)) {
            explain(*operand);
            return;
        }
    }
    for (ExpressionNode* operand : operands) {
        explain(*operand);
    }
}

void Explainer::explainImplication(BinaryExpressionNode& node) {
    const bool isTrue = isBoolean(explanation_.line().value, true);
    const PartValue left = parts_.evaluate(*node.getLhs());
    if (!isTrue || !isBoolean(left, true)) {
        explain(*node.getLhs());
    }
    if (isBoolean(left, true)) {
        explain(*node.getRhs());
    }
}

void Explainer::visitBinaryExpression(BinaryExpressionNode& node) {
    if (node.getOp() == BinaryOperator::IMPLIES) {
        explainImplication(node);
    } else if (isLogical(node.getOp())) {
        explainDecision(chainOperands(node), node.getOp() == BinaryOperator::OR);
    } else {
        explainOperands(chainOperands(node));
    }
}

void Explainer::visitUnaryExpression(UnaryExpressionNode& node) {
    explainOperands({node.getExpr().get()});
}

void Explainer::visitRelationalExpression(RelationalExpressionNode& node) {
    const bool isFailed = explanation_.isFailing();
    for (ExpressionNode* side : {node.getLhs().get(), node.getRhs().get()}) {
        if (!isEvident(*side) && (!isFailed || isFailure(parts_.evaluate(*side)))) {
            explain(*side);
        }
    }
}

void Explainer::visitApplicationExpression(ApplicationExpressionNode& node) {
    const std::string_view name = node.getName();
    const Operands arguments = argumentsOf(node);
    if (name == "alternation" && !isEmptyText(parts_.evaluate(*arguments[0]))) {
        explainOperand(*arguments[0]);
    } else if (name == "first" || name == "only" || name == "object") {
        explainExtraction(*arguments[0]);
    } else {
        explainOperands(arguments);
    }
}

void Explainer::explainExtraction(ExpressionNode& collection) {
    const MMObject* const object = std::get_if<MMObject>(&explanation_.line().value);
    if (object != nullptr && *object != mmNoObject) {
        ElementExplainer(explanation_, false).explain(collection, *object);
    } else {
        explainOperands({&collection});
    }
}

void Explainer::visitTupleExpression(TupleExpressionNode& node) {
    for (const ExpressionPtr& element : node.getElements()) {
        explainOperand(*element);
    }
}

void Explainer::visitIfExpression(IfExpressionNode& node) {
    explain(*node.getTest());
    const PartValue test = parts_.evaluate(*node.getTest());
    if (!isFailure(test)) {
        explain(isBoolean(test, true) ? *node.getThen() : *node.getElse());
    }
}

void Explainer::visitLetExpression(LetExpressionNode& node) {
    const LetScope scope(explanation_, node);
    explain(*node.getExpr());
}

// What is bound is explained where it is first used.
void Explainer::visitPath(PathNode& node) {
    Explanation::Let* const let = explanation_.letOf(node);
    if (let != nullptr && !let->isExplained) {
        let->isExplained = true;
        explainOperand(*let->source);
    } else if (node.getAssociation()) {
        DeadEnds(explanation_).explain(node);
    }
}

// ---------------------------------------------------------------- quantifiers and iterations

void Explainer::visitSpecification(SpecificationNode& node) { explain(*node.getExpr()); }

void Explainer::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    explainQuantifier(node, false);
}

void Explainer::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    explainQuantifier(node, true);
}

void Explainer::explainQuantifier(QuantifierNode& node, bool decisive) {
    const MMObjectVarExpr& variable = *parts_.variableOf(node);
    const auto decides = [&](MMObject object) {
        const MMVariableBinding binding(variable, object);
        const PartValue value = parts_.evaluate(*node.getExpr());
        return isFailure(value) || isBoolean(value, decisive);
    };
    PartElements source = parts_.elementsOf(*node.getSource(), decides);
    if (source.hasFound || (source.isComplete() && source.objects.size() == 1)) {
        const MMObject object = source.objects.back();
        const MMVariableBinding binding(variable, object);
        explanation_.line().bind(EvidenceLine::Kind::binding, std::string(node.getName()), object);
        ElementExplainer(explanation_, false).explain(*node.getSource(), object);
        explain(*node.getExpr());
    } else if (source.isComplete() && !source.objects.empty()) {
        explanation_.line().setElements(std::move(source.objects));
    } else {
        if (!source.hasFailed) {
            explanation_.line().setElements({});
        }
        explainOperand(*node.getSource());
    }
}

// Where an iteration fails in its body, the first object for which it does.
bool Explainer::explainFailingBody(const MMObjectVarExpr& variable, ExpressionNode& body,
                                   ExpressionNode& source) {
    const auto fails = [&](MMObject object) {
        const MMVariableBinding binding(variable, object);
        return isFailure(parts_.evaluate(body));
    };
    const PartElements elements = parts_.elementsOf(source, fails);
    if (elements.hasFound) {
        const MMObject object = elements.objects.back();
        const MMVariableBinding binding(variable, object);
        explanation_.line().bind(EvidenceLine::Kind::binding,
                                 std::string(anchorText(AnchorKind::CURRENT)), object);
        explain(body);
    }
    return elements.hasFound;
}

void Explainer::explainIteration(ExpressionNode& node, ExpressionNode& body,
                                 ExpressionNode& source) {
    if (!explanation_.isFailing() || !explainFailingBody(*parts_.variableOf(node), body, source)) {
        explainOperands({&source});
    }
}

void Explainer::visitMapExpression(MapExpressionNode& node) {
    explainIteration(node, *node.getFunction(), *node.getSource());
}

void Explainer::visitFilterExpression(FilterExpressionNode& node) {
    explainIteration(node, *node.getPredicate(), *node.getSource());
}

void Explainer::visitTraverseExpression(TraverseExpressionNode& node) {
    explainIteration(node, *node.getPath(), *node.getSource());
}

void Explainer::visitSortExpression(SortExpressionNode& node) {
    for (const SortKey& key : node.getKeys()) {
        if (explanation_.isFailing() &&
            explainFailingBody(*parts_.variableOf(key), *key.getExpr(), *node.getSource())) {
            return;
        }
    }
    explainOperands({node.getSource().get()});
}

}  // namespace mmq
