#include "fliodram/MMConstantExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMConstantExpr::MMConstantExpr(const MMValue& value) : MMValueExpr(value.getKind()), value_(value) {
    addBodyKinds(MM_KIND_CONSTANT);
    value_.own();
}

MMConstantExpr::MMConstantExpr(const char* text) : MMValueExpr(MMValue::Kind::text), value_(text) {
    addBodyKinds(MM_KIND_CONSTANT);
}

// The value of an expression that is a constant of a kind; else null.
const MMValue* MMConstantExpr::valueOf(const MMValueExpr* expression, MMValue::Kind kind) {
    const bool isConstant = expression != nullptr && expression->isAlways(kind) &&
                            (expression->getBodyKinds() & MM_KIND_CONSTANT) != 0;
    return isConstant ? &static_cast<const MMConstantExpr*>(expression)->value_ : nullptr;
}

std::string_view MMConstantExpr::textOf(const MMValueExpr* expression) {
    const MMValue* const value = valueOf(expression, MMValue::Kind::text);
    return value != nullptr ? value->getText() : std::string_view();
}

std::optional<int> MMConstantExpr::integerOf(const MMValueExpr* expression) {
    const MMValue* const value = valueOf(expression, MMValue::Kind::integer);
    return value != nullptr ? std::optional<int>(value->getInteger()) : std::nullopt;
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
