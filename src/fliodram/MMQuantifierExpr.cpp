#include "fliodram/MMQuantifierExpr.h"

#include "fliodram/MMAssociationExpr.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Evaluates the predicate for each object until it has the decisive value.
class PredicateTest final : public MMObjectConsumer {
public:
    PredicateTest(MMEvaluationContext& context, const MMObjectVarExpr& variable,
                  const MMValueExpr& predicate, bool decisive)
        : context_(context), binding_(variable), predicate_(predicate), decisive_(decisive) {}

    bool take(const MMObjectRange& objects) override {
        for (const MMObject object : objects) {
            context_.step();
            binding_.set(object);
            if (predicate_.evaluateBoolean(context_) == decisive_) {
                return false;
            }
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    MMVariableBinding binding_;
    const MMValueExpr& predicate_;
    bool decisive_;
};

}  // namespace

MMQuantifierExpr::MMQuantifierExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
                                   const OrvCyclicPtr<MMValueExpr>& predicate,
                                   const OrvCyclicPtr<MMObjectVarExpr>& variable, bool decisive)
    : MMValueExpr(MMValue::Kind::boolean, Ownership::nothing),
      collection_(*this, collection),
      association_(MMAssociationExpr::from(collection.get())),
      predicate_(*this, predicate),
      variable_(*this, variable),
      decisive_(decisive) {}

bool MMQuantifierExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    PredicateTest test(context, *variable_, *predicate_, decisive_);
    MMObjectRange range;
    const bool isKnown = association_ != nullptr && association_->knowsRange(context, range);
    const bool isUndecided =
        isKnown ? test.take(range) : forEachObject(context, *collection_, test);
    return isUndecided ? !decisive_ : decisive_;
}

MMValue MMQuantifierExpr::evaluate(MMEvaluationContext& context) const {
    return MMValue(evaluateBoolean(context));
}

void MMQuantifierExpr::print(MMTargetPrinter& printer) const {
    printer.begin(decisive_ ? "MMSomeExpr" : "MMAllExpr");
    printer.operand(collection_.get()).operand(predicate_.get()).operand(variable_.get()).end();
}

MMAllExpr::MMAllExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
                     const OrvCyclicPtr<MMValueExpr>& predicate,
                     const OrvCyclicPtr<MMObjectVarExpr>& variable)
    : MMQuantifierExpr(collection, predicate, variable, false) {}

MMAllExpr::~MMAllExpr() = default;

MMSomeExpr::MMSomeExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
                       const OrvCyclicPtr<MMValueExpr>& predicate,
                       const OrvCyclicPtr<MMObjectVarExpr>& variable)
    : MMQuantifierExpr(collection, predicate, variable, true) {}

MMSomeExpr::~MMSomeExpr() = default;
