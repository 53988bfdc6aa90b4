#include "fliodram/MMTextExpr.h"

#include <algorithm>
#include <limits>
#include <string>

#include "fliodram/MMAssociationExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/MMTextBuffer.h"

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
        : context_(context),
          delimiter_(delimiter),
          joined_(joined),
          kept_(context),
          counted_(joined.size()) {
        kept_.addLong(delimiter.size());
    }

    void take(std::string_view text) override {
        context_.countText(joined_.size(), delimiter_.size() + text.size());
        if (!isFirst_) {
            joined_.append(delimiter_);
        }
        isFirst_ = false;
        joined_.append(text);
        if (kept_.addLong(joined_.size() - counted_)) {
            counted_ = joined_.size();
        }
    }

private:
    MMEvaluationContext& context_;
    std::string_view delimiter_;
    std::string& joined_;
    MMKeptBytes kept_;     // of the joined text, while the next is evaluated
    std::size_t counted_;  // up to where it was added
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

bool isWhiteSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

std::string_view trimmed(std::string_view text) {
    const char* const start = std::find_if_not(text.begin(), text.end(), isWhiteSpace);
    const char* last = text.end();
    while (last != start && isWhiteSpace(last[-1])) {
        --last;
    }
    return {start, static_cast<std::size_t>(last - start)};
}

// A text in other letters, made piece by piece: the limits are looked at between two of them.
std::string changeCase(MMEvaluationContext& context, std::string_view text,
                       void (OrvString::*change)()) {
    constexpr std::size_t pieceSize = std::size_t{1} << 16U;
    context.checkTextSize(text.size());
    std::string changed;
    changed.reserve(text.size());
    while (changed.size() != text.size()) {
        OrvString piece(text.substr(changed.size(), pieceSize));
        (piece.*change)();
        context.countText(changed.size(), piece.view().size());
        changed.append(piece.view());
    }
    return changed;
}

}  // namespace

MMCountExpr::MMCountExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMValueExpr(MMValue::Kind::integer, Ownership::nothing),
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
    : MMValueExpr(MMValue::Kind::text, Ownership::nothing),
      delimiter_(*this, delimiter),
      strings_(*this, strings) {}

MMValue MMDelimiterExpr::evaluate(MMEvaluationContext& context) const {
    MMTextBuffer joined(context);
    appendText(context, joined.text());
    return MMValue(joined.release());
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
    : MMValueExpr(MMValue::Kind::text, Ownership::nothing), op_(op), text_(*this, text) {}

MMValue MMStringManipulationExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string buffer;
    const std::string_view text = text_->evaluateText(context, buffer);
    if (op_ != MM_TRIM) {
        return MMValue(
            changeCase(context, text, op_ == MM_LOWER ? &OrvString::toLower : &OrvString::toUpper));
    }
    context.countText(0, text.size());
    return MMValue(std::string(trimmed(text)));
}

void MMStringManipulationExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMStringManipulationExpr").number(op_).operand(text_.get()).end();
}

MMConversionExpr::MMConversionExpr(const OrvCyclicPtr<MMValueExpr>& value, MMValueType type)
    : MMValueExpr(kindOf(type), Ownership::nothing), value_(*this, value), type_(type) {}

MMValue MMConversionExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    MMValue value = value_->evaluate(context);
    if (value.getKind() == MMValue::Kind::text) {
        if (type_ == MM_STRING) {
            return value;
        }
        context.countBytes(value.getText().size());
    }
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
    : MMValueExpr(std::nullopt, Ownership::nothing),
      function_(*this, function),
      object_(*this, object) {}

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
