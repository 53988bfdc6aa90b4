#include "why/Why.h"

#include <algorithm>

#include "fliodram/MMEvaluationError.h"
#include "why/ElementExplainer.h"
#include "why/Explainer.h"

namespace mmq {

namespace {

// How many objects of a collection are explained.
constexpr std::size_t mostElements = 20;

// Runs an explanation with the expression applied to the object. A limit that is reached cuts it.
template <class Explain>
Evidence explainApplied(const CompiledExpression& expression, MMEvaluationContext& context,
                        MMObject object, const Explain& explain) {
    if (!expression.map->getRoot()) {
        return {};  // a bare attribute whose name is a keyword
    }
    SpecificationNode& root = *expression.map->getRoot();
    PartEvaluator parts(*expression.map, context);
    Explanation explanation{parts, {}, {}};
    const MMVariableBinding binding(*parts.variableOf(root), object);
    try {
        explain(explanation, *root.getExpr());
    } catch (const MMEvaluationError&) {
        explanation.evidence.isCut = true;
    }
    return std::move(explanation.evidence);
}

void explainElements(Explanation& explanation, ExpressionNode& collection) {
    const PartValue value = explanation.parts.evaluate(collection);
    const auto* const objects = std::get_if<std::vector<MMObject>>(&value);
    const std::size_t count = objects != nullptr ? objects->size() : 0;
    for (std::size_t i = 0; i < std::min(count, mostElements); ++i) {
        const auto place = objects->begin() + static_cast<std::ptrdiff_t>(i);
        const auto earlier = std::count(objects->begin(), place, *place);
        ElementExplainer(explanation, true)
            .explain(collection, *place, static_cast<std::size_t>(earlier));
    }
    if (explanation.evidence.lines.empty()) {
        Explainer(explanation).explain(collection);
    } else if (count > mostElements) {
        explanation.evidence.isCut = true;
    }
}

}  // namespace

Evidence explain(const CompiledExpression& expression, MMEvaluationContext& context,
                 MMObject object) {
    return explainApplied(expression, context, object,
                          [&expression](Explanation& explanation, ExpressionNode& whole) {
                              if (expression.collection) {
                                  explainElements(explanation, whole);
                              } else {
                                  Explainer(explanation).explain(whole);
                              }
                          });
}

Evidence explainElement(const CompiledExpression& expression, MMEvaluationContext& context,
                        MMObject object, MMObject element) {
    if (!expression.collection) {
        return {};
    }
    return explainApplied(expression, context, object,
                          [element](Explanation& explanation, ExpressionNode& whole) {
                              ElementExplainer(explanation, true).explain(whole, element);
                          });
}

}  // namespace mmq
