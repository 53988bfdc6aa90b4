#include "fliodram/MMExpr.h"

MMTarget::~MMTarget() = default;
MMExpr::~MMExpr() = default;
MMValueExpr::MMValueExpr() = default;
MMValueExpr::~MMValueExpr() = default;
MMObjectExpr::MMObjectExpr() = default;
MMObjectExpr::~MMObjectExpr() = default;
MMObjectCollectionExpr::MMObjectCollectionExpr() = default;
MMObjectCollectionExpr::~MMObjectCollectionExpr() = default;
MMStringCollectionExpr::MMStringCollectionExpr() = default;
MMStringCollectionExpr::~MMStringCollectionExpr() = default;

bool MMValueExpr::evaluateBoolean(MMEvaluationContext& context) const {
    return evaluate(context).toBoolean();
}
