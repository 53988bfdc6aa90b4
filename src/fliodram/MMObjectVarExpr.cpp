#include "fliodram/MMObjectVarExpr.h"

#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Keeps the first object; takes as many as decide which object it is.
class FirstObject final : public MMObjectConsumer {
public:
    FirstObject(const MMTarget& target, bool isFirstEnough)
        : target_(target), isFirstEnough_(isFirstEnough) {}

    bool take(const MMObjectRange& objects) override {
        if (objects.size() == 0) {
            return true;
        }
        if (object_ != mmNoObject || (objects.size() > 1 && !isFirstEnough_)) {
            throwEvaluationFailure("The collection has more than one object.", &target_);
        }
        object_ = *objects.begin();
        return !isFirstEnough_;
    }

    MMObject object() const { return object_; }

private:
    const MMTarget& target_;
    bool isFirstEnough_;
    MMObject object_ = mmNoObject;
};

}  // namespace

MMObjectVarExpr::MMObjectVarExpr() : MMObjectExpr(Ownership::nothing) {
    addBodyKinds(MM_KIND_OBJECT_VARIABLE);
}

MMObject MMObjectVarExpr::evaluate(MMEvaluationContext& /*context*/) const { return object_; }

void MMObjectVarExpr::print(MMTargetPrinter& printer) const { printer.variable(*this); }

MMModelExpr::MMModelExpr(const OrvCyclicPtr<MMObjectExpr>& object)
    : MMObjectExpr(Ownership::nothing), object_(*this, object) {}

MMObject MMModelExpr::evaluate(MMEvaluationContext& context) const {
    const MMObject object = object_.evaluate(context);
    return object != mmNoObject ? context.getModel().outermost(object) : mmNoObject;
}

void MMModelExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMModelExpr").operand(object_.get()).end();
}

MMObjectExtractionExpr::MMObjectExtractionExpr(
    const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMObjectExpr(Ownership::nothing), collection_(*this, collection) {}

void MMObjectExtractionExpr::choice(Choice choice) { choice_ = choice; }

MMObject MMObjectExtractionExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    FirstObject consumer(*this, choice_ == first);
    forEachObject(context, *collection_, consumer);
    return consumer.object();
}

void MMObjectExtractionExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMObjectExtractionExpr").operand(collection_.get());
    if (choice_) {
        printer.number(*choice_, "choice");
    }
    printer.end();
}
