#include "fliodram/MMObjectComparisonExpr.h"

#include <algorithm>
#include <vector>

#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectSet.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

std::vector<MMObject> sortedSet(MMEvaluationContext& context,
                                const MMObjectCollectionExpr& collection) {
    std::vector<MMObject> objects = MMObjectCollector::collect(context, collection);
    std::sort(objects.begin(), objects.end(), [&context](MMObject left, MMObject right) {
        context.step();
        return left < right;
    });
    objects.erase(std::unique(objects.begin(), objects.end()), objects.end());
    return objects;
}

}  // namespace

MMObjectEqualityExpr::MMObjectEqualityExpr(const OrvCyclicPtr<MMObjectExpr>& lhs, MMRelOp op,
                                           const OrvCyclicPtr<MMObjectExpr>& rhs)
    : MMValueExpr(MMValue::Kind::boolean, Ownership::nothing),
      lhs_(*this, lhs),
      op_(op),
      rhs_(*this, rhs) {}

bool MMObjectEqualityExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    const MMObject left = lhs_.evaluate(context);
    const bool isSame = left == rhs_.evaluate(context);
    return op_ == MM_EQUAL ? isSame : !isSame;
}

MMValue MMObjectEqualityExpr::evaluate(MMEvaluationContext& context) const {
    return MMValue(evaluateBoolean(context));
}

void MMObjectEqualityExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMObjectEqualityExpr");
    printer.operand(lhs_.get()).number(op_).operand(rhs_.get()).end();
}

MMObjectSetExpr::MMObjectSetExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& lhs, MMSetOp op,
                                 const OrvCyclicPtr<MMObjectCollectionExpr>& rhs)
    : MMValueExpr(MMValue::Kind::boolean, Ownership::nothing),
      lhs_(*this, lhs),
      op_(op),
      rhs_(*this, rhs) {}

bool MMObjectSetExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    const std::vector<MMObject> left = sortedSet(context, *lhs_);
    MMKeptBytes kept(context);
    kept.add(left.size() * sizeof(MMObject));
    const std::vector<MMObject> right = sortedSet(context, *rhs_);
    switch (op_) {
        case MM_SET_EQUAL:
            return left == right;
        case MM_SET_NOT_EQUAL:
            return left != right;
        case MM_PROPER_SUBSET:
            return left.size() < right.size() &&
                   std::includes(right.begin(), right.end(), left.begin(), left.end());
        case MM_SUBSET:
            return std::includes(right.begin(), right.end(), left.begin(), left.end());
    }
    throwEvaluationFailure("A comparison of sets has no known operator.");
}

MMValue MMObjectSetExpr::evaluate(MMEvaluationContext& context) const {
    return MMValue(evaluateBoolean(context));
}

void MMObjectSetExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMObjectSetExpr");
    printer.operand(lhs_.get()).number(op_).operand(rhs_.get()).end();
}
