#include "fliodram/MMConstantExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMConstantExpr::MMConstantExpr(const MMValue& value) : MMValueExpr(value.getKind()), value_(value) {
    addBodyKinds(MM_KIND_CONSTANT);
    value_.own();
}

MMConstantExpr::MMConstantExpr(const char* text) : MMValueExpr(MMValue::Kind::text), value_(text) {
    addBodyKinds(MM_KIND_CONSTANT);
}

std::string_view MMConstantExpr::textOf(const MMValueExpr* expression) {
    const bool isTextConstant = expression != nullptr &&
                                expression->isAlways(MMValue::Kind::text) &&
                                (expression->getBodyKinds() & MM_KIND_CONSTANT) != 0;
    return isTextConstant ? static_cast<const MMConstantExpr*>(expression)->value_.getText()
                          : std::string_view();
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
