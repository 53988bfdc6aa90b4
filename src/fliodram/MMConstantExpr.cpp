#include "fliodram/MMConstantExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMConstantExpr::MMConstantExpr(const MMValue& value) : MMValueExpr(value.getKind()), value_(value) {
    addBodyKinds(MM_KIND_CONSTANT);
    value_.own();
}

MMValue MMConstantExpr::evaluate(MMEvaluationContext& /*context*/) const {
    return value_.getKind() == MMValue::Kind::text ? MMValue::borrow(value_.getText()) : value_;
}

bool MMConstantExpr::evaluateBoolean(MMEvaluationContext& /*context*/) const {
    return value_.toBoolean();
}

int MMConstantExpr::evaluateInteger(MMEvaluationContext& /*context*/) const {
    return value_.getInteger();
}

void MMConstantExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMConstantExpr").value(value_).end();
}
