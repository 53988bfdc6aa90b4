#include "why/ElementExplainer.h"

#include "fliodram/MMEvaluationError.h"
#include "why/Explainer.h"

namespace mmq {

namespace {

// Functions of collections that keep their objects.
bool isRearrangement(const ApplicationExpressionNode& node) {
    const std::string& name = node.getName();
    return name == "unique" || name == "unique_stable" || name == "reverse";
}

}  // namespace

void ElementExplainer::explain(ExpressionNode& collection, MMObject element) {
    if (!explanation_.hasRoom()) {
        return;
    }
    switch (collection.getExpressionKind()) {
        case ExpressionKind::filterExpression:
            explainFiltered(static_cast<FilterExpressionNode&>(collection), element);
            break;
        case ExpressionKind::traverseExpression:
            explainTraversed(static_cast<TraverseExpressionNode&>(collection), element);
            break;
        case ExpressionKind::sortExpression:
            explain(*static_cast<SortExpressionNode&>(collection).getSource(), element);
            break;
        case ExpressionKind::letExpression: {
            const auto& let = static_cast<LetExpressionNode&>(collection);
            const LetScope scope(explanation_, let);
            explain(*let.getExpr(), element);
            break;
        }
        case ExpressionKind::ifExpression:
            explainChosen(static_cast<IfExpressionNode&>(collection), element);
            break;
        case ExpressionKind::path:
            explainReached(static_cast<PathNode&>(collection), element);
            break;
        case ExpressionKind::applicationExpression:
            if (const auto& call = static_cast<ApplicationExpressionNode&>(collection);
                isRearrangement(call)) {
                explain(*call.getExpr(), element);
            }
            break;
        default:
            break;
    }
}

bool ElementExplainer::addSubject(const ExpressionNode& body, MMObject object) {
    EvidenceLine line(body.getSpan(), object);
    line.bind(EvidenceLine::Kind::subject, anchorName(AnchorKind::CURRENT), object);
    return explanation_.add(std::move(line));
}

void ElementExplainer::explainFiltered(FilterExpressionNode& node, MMObject element) {
    explain(*node.getSource(), element);
    if (isThorough_ && addSubject(*node.getPredicate(), element)) {
        const MMVariableBinding binding(*explanation_.parts.variableOf(node), element);
        Explainer(explanation_).explain(*node.getPredicate());
    }
}

void ElementExplainer::explainTraversed(TraverseExpressionNode& node, MMObject element) {
    PartEvaluator& parts = explanation_.parts;
    const MMObjectVarExpr& variable = *parts.variableOf(node);
    const auto leadsToElement = [&](MMObject object) {
        const MMVariableBinding binding(variable, object);
        const auto isElement = [element](MMObject found) { return found == element; };
        return parts.elementsOf(*node.getPath(), isElement).hasFound;
    };
    const PartElements source = parts.elementsOf(*node.getSource(), leadsToElement);
    if (source.hasFound) {
        const MMObject object = source.objects.back();
        const MMVariableBinding binding(variable, object);
        explain(*node.getSource(), object);
        if (addSubject(*node.getPath(), object)) {
            explain(*node.getPath(), element);
        }
    }
}

void ElementExplainer::explainChosen(IfExpressionNode& node, MMObject element) {
    const PartValue test = explanation_.parts.evaluate(*node.getTest());
    if (isThorough_) {
        Explainer(explanation_).explain(*node.getTest());
    }
    explain(isBoolean(test, true) ? *node.getThen() : *node.getElse(), element);
}

// The trace follows the whole path, where the evaluation may have stopped before a step that fails.
void ElementExplainer::explainReached(PathNode& node, MMObject element) {
    if (const Explanation::Let* const let = explanation_.letOf(node)) {
        explain(*let->source, element);
        return;
    }
    try {
        const auto* const path = explanation_.parts.targetOf<MMAssociationExpr>(node);
        const PathTrace trace(explanation_.parts.begin(), *path);
        EvidenceLine line(node.getSpan(), element);
        line.kind = EvidenceLine::Kind::path;
        line.links = trace.linksTo(element);
        explanation_.add(std::move(line));
    } catch (const MMEvaluationError& error) {
        if (error.isLimit()) {
            throw;
        }
    }
}

}  // namespace mmq
