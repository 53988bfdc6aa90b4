#include "fliodram/MMExpr.h"

void MMTarget::anchor() const {}
void MMExpr::anchor() const {}
void MMObjectExpr::anchor() const {}
void MMStringCollectionExpr::anchor() const {}

bool MMValueExpr::evaluateBoolean(MMEvaluationContext& context) const {
    return evaluate(context).toBoolean();
}

int MMValueExpr::evaluateInteger(MMEvaluationContext& context) const {
    return evaluate(context).getInteger();
}

std::string_view MMValueExpr::evaluateText(MMEvaluationContext& context,
                                           std::string& buffer) const {
    return evaluate(context).releaseText(buffer);
}

const MMTextColumn* MMValueExpr::findColumn(const MMModel& /*model*/) const { return nullptr; }

void MMValueExpr::appendText(MMEvaluationContext& context, std::string& text) const {
    std::string buffer;
    const std::string_view piece = evaluateText(context, buffer);
    context.countText(text.size(), piece.size());
    text.append(piece);
}

bool MMObjectCollectionExpr::findRange(MMEvaluationContext& /*context*/, MMObjectRange& /*range*/,
                                       std::vector<MMObject>& /*buffer*/) const {
    return false;
}
