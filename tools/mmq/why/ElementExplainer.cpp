#include "why/ElementExplainer.h"

#include <algorithm>

#include "fliodram/MMEvaluationError.h"
#include "why/Explainer.h"

namespace mmq {

void ElementExplainer::explain(ExpressionNode& collection, MMObject element, std::size_t earlier) {
    if (explanation_.hasRoom()) {
        const MMObject outer = std::exchange(element_, element);
        const std::size_t outerEarlier = std::exchange(earlier_, earlier);
        walk(collection);
        element_ = outer;
        earlier_ = outerEarlier;
    }
}

// The first of each stays first; what is last comes first when the order is turned round.
void ElementExplainer::atRearrangement(const ApplicationExpressionNode& node) {
    if (node.getName() == "reverse") {
        const auto none = [](MMObject /*object*/) { return false; };
        const PartElements all = explanation_.parts.elementsOf(*node.getExpr(), none);
        const auto count = std::count(all.objects.begin(), all.objects.end(), element_);
        explain(*node.getExpr(), element_, static_cast<std::size_t>(count) - 1 - earlier_);
    } else {
        goOn(*node.getExpr());
    }
}

void ElementExplainer::atFilter(FilterExpressionNode& node) {
    goOn(*node.getSource());
    if (isThorough_ && explanation_.addSubject(*node.getPredicate(), element_)) {
        const MMVariableBinding binding(*explanation_.parts.variableOf(node), element_);
        Explainer(explanation_).explain(*node.getPredicate());
    }
}

void ElementExplainer::atTraverse(TraverseExpressionNode& node) {
    PartEvaluator& parts = explanation_.parts;
    const MMObjectVarExpr& variable = *parts.variableOf(node);
    std::size_t left = earlier_;  // places of the element that come before the one that is meant
    std::size_t inside = 0;       // those of them that the same object leads to
    const auto leadsToElement = [&](MMObject object) {
        const MMVariableBinding binding(variable, object);
        const auto isMeant = [&](MMObject found) { return found == element_ && left-- == 0; };
        inside = left;
        return parts.elementsOf(*node.getPath(), isMeant).hasFound;
    };
    const PartElements source = parts.elementsOf(*node.getSource(), leadsToElement);
    if (source.hasFound) {
        const MMObject object = source.objects.back();
        const auto equal = std::count(source.objects.begin(), source.objects.end(), object);
        const MMVariableBinding binding(variable, object);
        explain(*node.getSource(), object, static_cast<std::size_t>(equal) - 1);
        if (explanation_.addSubject(*node.getPath(), object)) {
            explain(*node.getPath(), element_, inside);
        }
    }
}

void ElementExplainer::atLet(LetExpressionNode& node) {
    const LetScope scope(explanation_, node);
    goOn(*node.getExpr());
}

void ElementExplainer::atConditional(IfExpressionNode& node) {
    const PartValue test = explanation_.parts.evaluate(*node.getTest());
    if (isThorough_) {
        Explainer(explanation_).explain(*node.getTest());
    }
    goOn(isBoolean(test, true) ? *node.getThen() : *node.getElse());
}

// The trace follows the whole path, where the evaluation may have stopped before a step that fails.
void ElementExplainer::atPath(PathNode& node) {
    if (const Explanation::Let* const let = explanation_.letOf(node)) {
        goOn(*let->source);
        return;
    }
    try {
        const auto* const path = explanation_.parts.targetOf<MMAssociationExpr>(node);
        const PathTrace trace(explanation_.parts.begin(), *path);
        EvidenceLine line(node.getSpan(), element_);
        line.kind = EvidenceLine::Kind::path;
        line.way = trace.wayTo(element_);
        explanation_.add(std::move(line));
    } catch (const MMEvaluationError& error) {
        if (error.isLimit()) {
            throw;
        }
    }
}

}  // namespace mmq
