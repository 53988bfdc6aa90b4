#include "fliodram/MMAttrExpr.h"

#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

// What a model's operation gave as a value: a view of the model's memory, or the buffer that it
// filled.
MMValue valueOf(std::string_view text, std::string& buffer) {
    const bool isBuffered = !text.empty() && text.data() == buffer.data();
    if (isBuffered && text.size() == buffer.size()) {
        return MMValue(std::move(buffer));
    }
    return isBuffered ? MMValue(std::string(text)) : MMValue::borrow(text);
}

}  // namespace

MMAttrExpr::MMAttrExpr(const OrvCyclicPtr<MMValueExpr>& name,
                       const OrvCyclicPtr<MMObjectExpr>& object)
    : MMValueExpr(MMValue::Kind::text, Ownership::nothing),
      object_(*this, object),
      name_(*this, name),
      constantName_(MMConstantExpr::textOf(name.get())) {}

std::string_view MMAttrExpr::computeName(MMEvaluationContext& context) const {
    std::string buffer;
    const std::string_view name = name_->evaluateText(context, buffer);
    context.countBytes(name.size());
    if (computedName_ == nullptr) {
        becomeOwner();
        computedName_ = std::make_unique<std::string>(name);
    } else if (name != *computedName_) {
        reader_.reset();
        *computedName_ = name;
    }
    return *computedName_;
}

std::string_view MMAttrExpr::evaluateText(MMEvaluationContext& context, std::string& buffer) const {
    context.checkDepth();
    const MMObject object = object_.evaluate(context);  // which may change the computed name
    const std::string_view name =
        constantName_.data() != nullptr ? constantName_ : computeName(context);
    return reader_.read(context, name, object, buffer);
}

MMValue MMAttrExpr::evaluate(MMEvaluationContext& context) const {
    std::string buffer;
    return valueOf(evaluateText(context, buffer), buffer);
}

void MMAttrExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAttrExpr").operand(name_.get()).operand(object_.get()).end();
}

MMClassNameExpr::MMClassNameExpr(const OrvCyclicPtr<MMObjectExpr>& object)
    : MMValueExpr(MMValue::Kind::text, Ownership::nothing), object_(*this, object) {}

std::string_view MMClassNameExpr::evaluateText(MMEvaluationContext& context,
                                               std::string& /*buffer*/) const {
    return reader_.read(context.getModel(), object_.evaluate(context));
}

MMValue MMClassNameExpr::evaluate(MMEvaluationContext& context) const {
    std::string buffer;
    return MMValue::borrow(evaluateText(context, buffer));
}

void MMClassNameExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMClassNameExpr").operand(object_.get()).end();
}

MMUidExpr::MMUidExpr(const OrvCyclicPtr<MMObjectExpr>& object)
    : MMValueExpr(MMValue::Kind::text, Ownership::nothing), object_(*this, object) {}

std::string_view MMUidExpr::evaluateText(MMEvaluationContext& context, std::string& buffer) const {
    const MMObject object = object_.evaluate(context);
    buffer.clear();
    if (object == mmNoObject) {
        return {};
    }
    const std::string_view uid = context.getModel().uid(object, buffer);
    context.countCopy(buffer.size());
    return uid;
}

MMValue MMUidExpr::evaluate(MMEvaluationContext& context) const {
    std::string buffer;
    return valueOf(evaluateText(context, buffer), buffer);
}

void MMUidExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUidExpr").operand(object_.get()).end();
}
