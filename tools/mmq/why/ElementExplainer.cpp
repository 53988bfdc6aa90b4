#include "why/ElementExplainer.h"

#include "fliodram/MMEvaluationError.h"
#include "why/Explainer.h"

namespace mmq {

void ElementExplainer::explain(ExpressionNode& collection, MMObject element) {
    if (explanation_.hasRoom()) {
        const MMObject outer = std::exchange(element_, element);
        walk(collection);
        element_ = outer;
    }
}

void ElementExplainer::atFilter(FilterExpressionNode& node) {
    explain(*node.getSource(), element_);
    if (isThorough_ && explanation_.addSubject(*node.getPredicate(), element_)) {
        const MMVariableBinding binding(*explanation_.parts.variableOf(node), element_);
        Explainer(explanation_).explain(*node.getPredicate());
    }
}

void ElementExplainer::atTraverse(TraverseExpressionNode& node) {
    PartEvaluator& parts = explanation_.parts;
    const MMObjectVarExpr& variable = *parts.variableOf(node);
    const auto leadsToElement = [&](MMObject object) {
        const MMVariableBinding binding(variable, object);
        const auto isElement = [this](MMObject found) { return found == element_; };
        return parts.elementsOf(*node.getPath(), isElement).hasFound;
    };
    const PartElements source = parts.elementsOf(*node.getSource(), leadsToElement);
    if (source.hasFound) {
        const MMObject object = source.objects.back();
        const MMVariableBinding binding(variable, object);
        explain(*node.getSource(), object);
        if (explanation_.addSubject(*node.getPath(), object)) {
            explain(*node.getPath(), element_);
        }
    }
}

void ElementExplainer::atLet(LetExpressionNode& node) {
    const LetScope scope(explanation_, node);
    explain(*node.getExpr(), element_);
}

void ElementExplainer::atConditional(IfExpressionNode& node) {
    const PartValue test = explanation_.parts.evaluate(*node.getTest());
    if (isThorough_) {
        Explainer(explanation_).explain(*node.getTest());
    }
    explain(isBoolean(test, true) ? *node.getThen() : *node.getElse(), element_);
}

// The trace follows the whole path, where the evaluation may have stopped before a step that fails.
void ElementExplainer::atPath(PathNode& node) {
    if (const Explanation::Let* const let = explanation_.letOf(node)) {
        explain(*let->source, element_);
        return;
    }
    try {
        const auto* const path = explanation_.parts.targetOf<MMAssociationExpr>(node);
        const PathTrace trace(explanation_.parts.begin(), *path);
        EvidenceLine line(node.getSpan(), element_);
        line.kind = EvidenceLine::Kind::path;
        line.links = trace.linksTo(element_);
        explanation_.add(std::move(line));
    } catch (const MMEvaluationError& error) {
        if (error.isLimit()) {
            throw;
        }
    }
}

}  // namespace mmq
