#include "fliodram/MMTextExpr.h"

#include <limits>
#include <string>

#include "fliodram/MMAssociationExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Counts without looking at the objects.
class Counter final : public MMObjectConsumer {
public:
    explicit Counter(MMEvaluationContext& context) : context_(context) {}

    bool take(const MMObjectRange& objects) override {
        context_.step();
        count_ += objects.size();
        return true;
    }

    std::size_t count() const { return count_; }

private:
    MMEvaluationContext& context_;
    std::size_t count_ = 0;
};

/// Appends the texts that it takes to another, joined.
class Joiner final : public MMTextConsumer {
public:
    Joiner(MMEvaluationContext& context, std::string_view delimiter, std::string& joined)
        : context_(context), delimiter_(delimiter), joined_(joined) {}

    void take(std::string_view text) override {
        context_.countText(joined_.size(), delimiter_.size() + text.size());
        if (!isFirst_) {
            joined_.append(delimiter_);
        }
        isFirst_ = false;
        joined_.append(text);
    }

private:
    MMEvaluationContext& context_;
    std::string_view delimiter_;
    std::string& joined_;
    bool isFirst_ = true;
};

MMValue::Kind kindOf(MMValueType type) {
    switch (type) {
        case MM_INTEGER:
            return MMValue::Kind::integer;
        case MM_REAL:
            return MMValue::Kind::real;
        case MM_BOOLEAN:
            return MMValue::Kind::boolean;
        case MM_STRING:
            break;
    }
    return MMValue::Kind::text;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    const std::size_t start = text.find_first_not_of(whiteSpace);
    return start == std::string_view::npos
               ? std::string_view()
               : text.substr(start, text.find_last_not_of(whiteSpace) - start + 1);
}

}  // namespace

MMCountExpr::MMCountExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMValueExpr(MMValue::Kind::integer),
      collection_(*this, collection),
      association_(MMAssociationExpr::from(collection.get())) {}

MMValue MMCountExpr::evaluate(MMEvaluationContext& context) const {
    return MMValue(evaluateInteger(context));
}

int MMCountExpr::evaluateInteger(MMEvaluationContext& context) const {
    Counter counter(context);
    MMObjectRange range;
    if (association_ != nullptr && association_->knowsRange(context, range)) {
        counter.take(range);
    } else {
        context.checkDepth();
        forEachObject(context, *collection_, counter);
    }
    if (counter.count() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throwEvaluationFailure("The size of a collection is out of the range of integers.");
    }
    return static_cast<int>(counter.count());
}

void MMCountExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMCountExpr").operand(collection_.get()).end();
}

MMDelimiterExpr::MMDelimiterExpr(const OrvCyclicPtr<MMValueExpr>& delimiter,
                                 const OrvCyclicPtr<MMStringCollectionExpr>& strings)
    : MMValueExpr(MMValue::Kind::text), delimiter_(*this, delimiter), strings_(*this, strings) {}

MMValue MMDelimiterExpr::evaluate(MMEvaluationContext& context) const {
    std::string joined;
    appendText(context, joined);
    return MMValue(std::move(joined));
}

void MMDelimiterExpr::appendText(MMEvaluationContext& context, std::string& text) const {
    context.checkDepth();
    std::string buffer;
    Joiner joiner(context, delimiter_->evaluateText(context, buffer), text);
    strings_->forEach(context, joiner);
}

void MMDelimiterExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMDelimiterExpr").operand(delimiter_.get()).operand(strings_.get()).end();
}

MMStringManipulationExpr::MMStringManipulationExpr(MMStringOp op,
                                                   const OrvCyclicPtr<MMValueExpr>& text)
    : MMValueExpr(MMValue::Kind::text), op_(op), text_(*this, text) {}

MMValue MMStringManipulationExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    OrvString text = text_->evaluate(context).asString();
    context.countText(0, text.length());
    switch (op_) {
        case MM_LOWER:
            text.toLower();
            break;
        case MM_UPPER:
            text.toUpper();
            break;
        case MM_TRIM:
            return MMValue(std::string(trimmed(text.view())));
    }
    return MMValue(text);
}

void MMStringManipulationExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMStringManipulationExpr").number(op_).operand(text_.get()).end();
}

MMConversionExpr::MMConversionExpr(const OrvCyclicPtr<MMValueExpr>& value, MMValueType type)
    : MMValueExpr(kindOf(type)), value_(*this, value), type_(type) {}

MMValue MMConversionExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    const MMValue value = value_->evaluate(context);
    return evaluateAt(*this, [&] { return value.convertedTo(type_); });
}

std::string_view MMConversionExpr::evaluateText(MMEvaluationContext& context,
                                                std::string& buffer) const {
    context.checkDepth();
    return type_ == MM_STRING ? value_->evaluateText(context, buffer)
                              : MMValueExpr::evaluateText(context, buffer);
}

void MMConversionExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMConversionExpr").operand(value_.get()).number(type_).end();
}

MMApplyValueExpr::MMApplyValueExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
                                   const OrvCyclicPtr<MMObjectExpr>& object)
    : function_(*this, function), object_(*this, object) {}

MMValue MMApplyValueExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    return function_->evaluateFor(context, object_.evaluate(context));
}

bool MMApplyValueExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    return function_->evaluateBooleanFor(context, object_.evaluate(context));
}

std::string_view MMApplyValueExpr::evaluateText(MMEvaluationContext& context,
                                                std::string& buffer) const {
    context.checkDepth();
    return function_->evaluateTextFor(context, object_.evaluate(context), buffer);
}

void MMApplyValueExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMApplyValueExpr").operand(function_.get()).operand(object_.get()).end();
}
