#include "fliodram/MMConstantExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMConstantExpr::MMConstantExpr(const MMValue& value) : value_(value) { value_.own(); }
MMConstantExpr::MMConstantExpr(const char* text) : value_(text) {}

MMValue MMConstantExpr::evaluate(MMEvaluationContext& /*context*/) const {
    return value_.getKind() == MMValue::Kind::text ? MMValue::borrow(value_.getText()) : value_;
}

void MMConstantExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMConstantExpr").value(value_).end();
}
