#include "fliodram/MMExpr.h"

MMTarget::~MMTarget() = default;
MMExpr::~MMExpr() = default;
MMValueExpr::MMValueExpr() { addBodyKinds(MM_KIND_VALUE); }
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
