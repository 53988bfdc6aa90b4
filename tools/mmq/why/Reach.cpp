#include "why/Reach.h"

#include "fliodram/MMEvaluationError.h"
#include "why/CollectionWalk.h"
#include "why/Explanation.h"

namespace mmq {

namespace {

/// Collects the links of all paths that a collection comes from.
class LinkCollector : private CollectionWalk {
public:
    explicit LinkCollector(PartEvaluator& parts) : scopes_{parts, {}, {}}, parts_(parts) {}

    Reach collect(ExpressionNode& collection) {
        descend(collection);
        return std::move(reach_);
    }

private:
    void descend(ExpressionNode& node) {
        if (scopes_.hasRoom()) {
            walk(node);
        }
    }

    void atFilter(FilterExpressionNode& node) override { descend(*node.getSource()); }

    void atTraverse(TraverseExpressionNode& node) override {
        descend(*node.getSource());
        const auto all = [](MMObject /*object*/) { return false; };
        for (const MMObject object : parts_.elementsOf(*node.getSource(), all).objects) {
            const MMVariableBinding binding(*parts_.variableOf(node), object);
            descend(*node.getPath());
        }
    }

    void atLet(LetExpressionNode& node) override {
        const LetScope scope(scopes_, node);
        descend(*node.getExpr());
    }

    void atConditional(IfExpressionNode& node) override {
        const bool isTrue = isBoolean(parts_.evaluate(*node.getTest()), true);
        descend(isTrue ? *node.getThen() : *node.getElse());
    }

    void atPath(PathNode& node) override {
        if (const Explanation::Let* const let = scopes_.letOf(node)) {
            descend(*let->source);
            return;
        }
        reach_.hasPath = true;
        try {
            const auto* const path = parts_.targetOf<MMAssociationExpr>(node);
            const PathTrace trace(parts_.begin(), *path);
            if (trace.getStart() != mmNoObject) {
                reach_.starts.push_back(trace.getStart());
            }
            const std::vector<PathLink> links = trace.allLinks();
            reach_.links.insert(reach_.links.end(), links.begin(), links.end());
        } catch (const MMEvaluationError& error) {
            if (error.isLimit()) {
                throw;
            }
        }
    }

    Explanation scopes_;
    PartEvaluator& parts_;
    Reach reach_;
};

}  // namespace

Reach reachOf(const CompiledExpression& expression, MMEvaluationContext& context, MMObject object) {
    SpecificationNode& root = *expression.map->getRoot();
    PartEvaluator parts(*expression.map, context);
    const MMVariableBinding binding(*parts.variableOf(root), object);
    return LinkCollector(parts).collect(*root.getExpr());
}

}  // namespace mmq
