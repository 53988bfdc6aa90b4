#include "why/CollectionWalk.h"

namespace mmq {

namespace {

// Functions of collections that keep their objects.
bool isRearrangement(const ApplicationExpressionNode& node) {
    const std::string_view name = node.getName();
    return name == "unique" || name == "unique_stable" || name == "reverse";
}

}  // namespace

void CollectionWalk::walk(ExpressionNode& collection) {
    switch (collection.getExpressionKind()) {
        case ExpressionKind::filterExpression:
            return atFilter(static_cast<FilterExpressionNode&>(collection));
        case ExpressionKind::traverseExpression:
            return atTraverse(static_cast<TraverseExpressionNode&>(collection));
        case ExpressionKind::letExpression:
            return atLet(static_cast<LetExpressionNode&>(collection));
        case ExpressionKind::ifExpression:
            return atConditional(static_cast<IfExpressionNode&>(collection));
        case ExpressionKind::path:
            return atPath(static_cast<PathNode&>(collection));
        case ExpressionKind::sortExpression:
            return walk(*static_cast<SortExpressionNode&>(collection).getSource());
        case ExpressionKind::applicationExpression: {
            const auto& call = static_cast<ApplicationExpressionNode&>(collection);
            return isRearrangement(call) ? atRearrangement(call) : void();
        }
        default:
            return;
    }
}

}  // namespace mmq
