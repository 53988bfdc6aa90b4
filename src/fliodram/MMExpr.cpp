#include "fliodram/MMExpr.h"

MMTarget::~MMTarget() = default;
MMExpr::~MMExpr() = default;
MMValueExpr::~MMValueExpr() = default;
MMObjectExpr::MMObjectExpr() { addBodyKinds(MM_KIND_OBJECT); }
MMObjectExpr::~MMObjectExpr() = default;
MMObjectCollectionExpr::MMObjectCollectionExpr() { addBodyKinds(MM_KIND_OBJECT_COLLECTION); }
MMObjectCollectionExpr::~MMObjectCollectionExpr() = default;
MMStringCollectionExpr::MMStringCollectionExpr() { addBodyKinds(MM_KIND_STRING_COLLECTION); }
MMStringCollectionExpr::~MMStringCollectionExpr() = default;

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
