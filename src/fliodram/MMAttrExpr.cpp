#include "fliodram/MMAttrExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMAttrExpr::MMAttrExpr(const OrvCyclicPtr<MMValueExpr>& name,
                       const OrvCyclicPtr<MMObjectExpr>& object)
    : name_(*this, name), object_(*this, object) {}

MMKey MMAttrExpr::findKey(MMEvaluationContext& context) const {
    const MMValue value = name_->evaluate(context);
    std::string buffer;
    return key_.keyOf(
        context.getModel(), value.asText(buffer),
        [](const MMModel& model, std::string_view name) { return model.attributeKey(name); });
}

MMValue MMAttrExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    const MMKey key = findKey(context);
    const MMObject object = object_->evaluate(context);
    if (key == mmUnknownKey || object == mmNoObject) {
        return MMValue::borrow({});
    }
    std::string buffer;
    return valueOf(context.getModel().attribute(object, key, buffer), buffer);
}

void MMAttrExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAttrExpr").operand(name_.get()).operand(object_.get()).end();
}

MMClassNameExpr::MMClassNameExpr(const OrvCyclicPtr<MMObjectExpr>& object)
    : object_(*this, object) {}

MMValue MMClassNameExpr::evaluate(MMEvaluationContext& context) const {
    const MMObject object = object_->evaluate(context);
    return MMValue::borrow(object != mmNoObject ? context.getModel().className(object)
                                                : std::string_view());
}

void MMClassNameExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMClassNameExpr").operand(object_.get()).end();
}

MMUidExpr::MMUidExpr(const OrvCyclicPtr<MMObjectExpr>& object) : object_(*this, object) {}

MMValue MMUidExpr::evaluate(MMEvaluationContext& context) const {
    const MMObject object = object_->evaluate(context);
    std::string buffer;
    return object != mmNoObject ? valueOf(context.getModel().uid(object, buffer), buffer)
                                : MMValue::borrow({});
}

void MMUidExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUidExpr").operand(object_.get()).end();
}
