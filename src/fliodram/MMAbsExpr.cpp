#include "fliodram/MMAbsExpr.h"

#include <new>

#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectSet.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

// Runs an evaluation from outside: what leaves it is an evaluation error or std::bad_alloc.
template <class Evaluation>
auto evaluateGuarded(MMEvaluationContext& context, const Evaluation& evaluation) {
    context.begin();
    try {
        return evaluation();
    } catch (const MMEvaluationError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        throwEvaluationFailure(exception.what());
    } catch (...) {
        throwEvaluationFailure("The model failed without saying why.");
    }
}

}  // namespace

MMValueAbsExpr::MMValueAbsExpr(const OrvCyclicPtr<MMObjectVarExpr>& variable,
                               const OrvCyclicPtr<MMValueExpr>& body)
    : MMExpr(Ownership::nothing), variable_(*this, variable), body_(*this, body) {}

const MMConjunction& MMValueAbsExpr::makeConjunction() const {
    becomeOwner();
    conjunction_ = std::make_unique<const MMConjunction>(*body_, *variable_);
    mayHaveVerdicts_ = !conjunction_->isEmpty();
    return *conjunction_;
}

void MMValueAbsExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMValueAbsExpr").operand(variable_.get()).operand(body_.get()).end();
}

MMValue MMValueAbsExpr::apply(MMEvaluationContext& context, MMObject object) const {
    return evaluateGuarded(context, [&] {
        MMValue value = evaluateFor(context, object);
        ownText(context, value);
        return value;
    });
}

MMObjectCollectionAbsExpr::MMObjectCollectionAbsExpr(
    const OrvCyclicPtr<MMObjectVarExpr>& variable, const OrvCyclicPtr<MMObjectCollectionExpr>& body)
    : MMExpr(Ownership::nothing), variable_(*this, variable), body_(*this, body) {}

void MMObjectCollectionAbsExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMObjectCollectionAbsExpr").operand(variable_.get()).operand(body_.get()).end();
}

std::vector<MMObject> MMObjectCollectionAbsExpr::apply(MMEvaluationContext& context,
                                                       MMObject object) const {
    return evaluateGuarded(context, [&] {
        MMObjectCollector collector(context);
        forEachOf(context, object, collector);
        return collector.release();
    });
}
