// Chains of operators that lean to the left, as the parser makes them, are evaluated in a loop over
// their operands, so that their length costs no stack. An integer beside a real is taken as a real,
// a text beside anything makes a text, and integers that overflow end the evaluation.
#include "fliodram/MMOperatorExpr.h"

#include <algorithm>
#include <string>
#include <vector>

#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectVarExpr.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/MMTextBuffer.h"
#include "foundation/TextOutput.h"

namespace {

const char* symbolOf(int op) {
    switch (op) {
        case MM_ADD:
            return " + ";
        case MM_SUBTRACT:
            return " - ";
        case MM_MULTIPLY:
            return " * ";
        default:
            return " / ";
    }
}

[[noreturn]] void failOverflow(int left, int op, int right) {
    std::string sentence = "The result of ";
    appendInteger(sentence, left);
    sentence += symbolOf(op);
    appendInteger(sentence, right);
    throwEvaluationFailure(sentence + " is out of the range of integers.");
}

int calculate(int left, int op, int right) {
    int result = 0;
    bool isOverflow = false;
    switch (op) {
        case MM_ADD:
            isOverflow = __builtin_add_overflow(left, right, &result);
            break;
        case MM_SUBTRACT:
            isOverflow = __builtin_sub_overflow(left, right, &result);
            break;
        case MM_MULTIPLY:
            isOverflow = __builtin_mul_overflow(left, right, &result);
            break;
        default:
            if (right == 0) {
                throwEvaluationFailure("Division by zero.");
            }
            isOverflow = right == -1 && __builtin_sub_overflow(0, left, &result);
            result = isOverflow || right == -1 ? result : left / right;
    }
    if (isOverflow) {
        failOverflow(left, op, right);
    }
    return result;
}

double calculate(double left, int op, double right) {
    switch (op) {
        case MM_ADD:
            return left + right;
        case MM_SUBTRACT:
            return left - right;
        case MM_MULTIPLY:
            return left * right;
        default:
            return left / right;
    }
}

bool isNumber(const MMValue& value) {
    return value.getKind() == MMValue::Kind::integer || value.getKind() == MMValue::Kind::real;
}

double realOf(const MMValue& value) {
    return value.getKind() == MMValue::Kind::integer ? value.getInteger() : value.getReal();
}

void joinTexts(MMEvaluationContext& context, MMValue& left, const MMValue& right) {
    std::string buffer;
    const std::string_view more = right.asText(buffer);
    if (left.getKind() != MMValue::Kind::text) {
        left = MMValue(left.asString());
    }
    context.countBytes(left.isBorrowed() ? left.getText().size() : 0);
    context.countText(left.getText().size(), more.size());
    left.appendText(more);
}

// MMValue::compare(), within the limits.
std::partial_ordering compareValues(MMEvaluationContext& context, const MMValue& left,
                                    const MMValue& right) {
    if (left.getKind() == MMValue::Kind::text && right.getKind() == MMValue::Kind::text) {
        context.countBytes(std::min(left.getText().size(), right.getText().size()));
    }
    return left.compare(right);
}

void negate(MMValue& value) {
    if (value.getKind() == MMValue::Kind::integer) {
        value = MMValue(calculate(0, MM_SUBTRACT, value.getInteger()));
    } else if (value.getKind() == MMValue::Kind::real) {
        value = MMValue(-value.getReal());
    } else {
        throwEvaluationFailure("Only a number can be negated.");
    }
}

}  // namespace

MMValue MMOperatorExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    if (!isLongChain()) {
        MMValue value = lhs_->evaluate(context);
        apply(context, value);
        return value;
    }
    MMValue value = chain().back()->lhs_->evaluate(context);
    for (auto next = chain().rbegin(); next != chain().rend(); ++next) {
        (*next)->apply(context, value);
    }
    return value;
}

const std::vector<const MMOperatorExpr*>& MMOperatorExpr::chain() const {
    if (chain_ == nullptr) {
        auto chain = std::make_unique<std::vector<const MMOperatorExpr*>>();
        chain->reserve(chainLength_);
        for (const MMOperatorExpr* next = this; next != nullptr; next = from(next->lhs_.get())) {
            chain->push_back(next);
        }
        becomeOwner();
        chain_ = std::move(chain);
    }
    return *chain_;
}

void MMOperatorExpr::print(MMTargetPrinter& printer) const {
    std::vector<const MMOperatorExpr*> chain;
    for (const MMOperatorExpr* next = this; next != nullptr; next = from(next->lhs_.get())) {
        chain.push_back(next);
        printer.begin(next->className());
    }
    printer.operand(chain.back()->lhs_.get());
    for (auto next = chain.rbegin(); next != chain.rend(); ++next) {
        printer.number((*next)->op_).operand((*next)->rhs_.get()).end();
    }
}

// What is known of the result beforehand: a text beside anything is joined with it.
std::optional<MMValue::Kind> MMArithmeticExpr::kindOf(const MMValueExpr* left, int op,
                                                      const MMValueExpr* right) {
    const auto isText = [](const MMValueExpr* operand) {
        return operand != nullptr && operand->isAlways(MMValue::Kind::text);
    };
    if (op == MM_ADD && left != nullptr && right != nullptr && (isText(left) || isText(right))) {
        return MMValue::Kind::text;
    }
    return areAlways(MMValue::Kind::integer, left, right) ? std::optional(MMValue::Kind::integer)
                                                          : std::nullopt;
}

MMArithmeticExpr::MMArithmeticExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMArithOp op,
                                   const OrvCyclicPtr<MMValueExpr>& rhs)
    : MMOperatorExpr(lhs, op, rhs, kindOf(lhs.get(), op, rhs.get())) {}

const char* MMArithmeticExpr::className() const { return "MMArithmeticExpr"; }

MMValue MMArithmeticExpr::evaluate(MMEvaluationContext& context) const {
    if (!isAlways(MMValue::Kind::text)) {
        return MMOperatorExpr::evaluate(context);
    }
    MMTextBuffer joined(context);
    appendText(context, joined.text());
    return MMValue(joined.release());
}

std::string_view MMArithmeticExpr::evaluateText(MMEvaluationContext& context,
                                                std::string& buffer) const {
    if (!isAlways(MMValue::Kind::text)) {
        return MMValueExpr::evaluateText(context, buffer);
    }
    buffer.clear();
    appendText(context, buffer);
    return buffer;
}

// The operands of a join are appended from left to right; a long chain of joins in a loop. What one
// operand has appended is kept while the next is evaluated.
void MMArithmeticExpr::appendText(MMEvaluationContext& context, std::string& text) const {
    if (!isAlways(MMValue::Kind::text)) {
        MMValueExpr::appendText(context, text);
        return;
    }
    context.checkDepth();
    MMKeptBytes kept(context);
    std::size_t counted = text.size();
    if (!isLongChain()) {
        lhs()->appendText(context, text);
        kept.addLong(text.size() - counted);
        rhs()->appendText(context, text);
        return;
    }
    std::size_t joins = 1;
    while (joins < chain().size() && chain()[joins]->isAlways(MMValue::Kind::text)) {
        ++joins;
    }
    chain()[joins - 1]->lhs()->appendText(context, text);
    while (joins != 0) {
        if (kept.addLong(text.size() - counted)) {
            counted = text.size();
        }
        chain()[--joins]->rhs()->appendText(context, text);
    }
}

void MMArithmeticExpr::apply(MMEvaluationContext& context, MMValue& value) const {
    if (!rhs()) {
        evaluateAt(*this, [&] { negate(value); });
        return;
    }
    MMKeptBytes kept(context);
    kept.addLong(value.ownSize());
    const MMValue right = rhs()->evaluate(context);
    evaluateAt(*this, [&] { combine(context, value, right); });
}

void MMArithmeticExpr::combine(MMEvaluationContext& context, MMValue& value,
                               const MMValue& right) const {
    if (value.getKind() == MMValue::Kind::integer && right.getKind() == MMValue::Kind::integer) {
        value = MMValue(calculate(value.getInteger(), op(), right.getInteger()));
    } else if (isNumber(value) && isNumber(right)) {
        value = MMValue(calculate(realOf(value), op(), realOf(right)));
    } else if (op() == MM_ADD) {
        joinTexts(context, value, right);
    } else {
        throwEvaluationFailure("Texts can be joined with +, and nothing else.");
    }
}

MMBooleanExpr::MMBooleanExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMLogOp op,
                             const OrvCyclicPtr<MMValueExpr>& rhs)
    : MMOperatorExpr(lhs, op, rhs, MMValue::Kind::boolean) {}

const char* MMBooleanExpr::className() const { return "MMBooleanExpr"; }

bool MMBooleanExpr::combine(MMEvaluationContext& context, bool left) const {
    switch (op()) {
        case MM_AND:
            return left && rhs()->evaluateBoolean(context);
        case MM_OR:
            return left || rhs()->evaluateBoolean(context);
        case MM_IMPLIES:
            return !left || rhs()->evaluateBoolean(context);
        default:
            return !left;
    }
}

void MMBooleanExpr::apply(MMEvaluationContext& context, MMValue& value) const {
    value = MMValue(combine(context, value.toBoolean()));
}

MMValue MMBooleanExpr::evaluate(MMEvaluationContext& context) const {
    return isLongChain() ? MMOperatorExpr::evaluate(context) : MMValue(evaluateBoolean(context));
}

bool MMBooleanExpr::evaluateBoolean(MMEvaluationContext& context) const {
    if (isLongChain()) {
        return MMOperatorExpr::evaluate(context).toBoolean();
    }
    context.checkDepth();
    return combine(context, lhs()->evaluateBoolean(context));
}

MMRelationalExpr::MMRelationalExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMRelOp op,
                                   const OrvCyclicPtr<MMValueExpr>& rhs)
    : MMOperatorExpr(lhs, op, rhs, MMValue::Kind::boolean),
      comparison_(chooseComparison(lhs.get(), rhs.get())),
      constantRight_(MMConstantExpr::textOf(rhs.get())),
      integerRight_(comparison_ == Comparison::ofIntegers ? MMConstantExpr::integerOf(rhs.get())
                                                          : std::nullopt),
      owner_(comparison_ == Comparison::ofTexts && constantRight_.data() != nullptr
                 ? lhs->getOwner()
                 : nullptr) {}

const char* MMRelationalExpr::className() const { return "MMRelationalExpr"; }

bool MMRelationalExpr::holds(std::partial_ordering order) const {
    switch (op()) {
        case MM_EQUAL:
            return order == 0;
        case MM_NOT_EQUAL:
            return order != 0;
        case MM_LESS:
            return order < 0;
        case MM_GREATER:
            return order > 0;
        case MM_LESS_EQUAL:
            return order <= 0;
        case MM_GREATER_EQUAL:
            return order >= 0;
        default:
            throwEvaluationFailure("A comparison has no known operator.");
    }
}

void MMRelationalExpr::apply(MMEvaluationContext& context, MMValue& value) const {
    MMKeptBytes kept(context);
    kept.addLong(value.ownSize());
    value = MMValue(holds(compareValues(context, value, rhs()->evaluate(context))));
}

MMValue MMRelationalExpr::evaluate(MMEvaluationContext& context) const {
    return isLongChain() ? MMOperatorExpr::evaluate(context) : MMValue(evaluateBoolean(context));
}

// Compares the texts, and keeps the verdict for all objects that have the same text by their code.
bool MMRelationalExpr::judge(MMEvaluationContext& context) const {
    context.checkDepth();
    const bool verdict = compareTexts(context);
    remember(context.getModel(), verdict);
    return verdict;
}

void MMRelationalExpr::remember(const MMModel& model, bool verdict) const {
    const MMTextColumn* const column = lhs()->findColumn(model);
    std::string_view text;
    if (column == nullptr || column->texts == nullptr || !column->read(owner_->object(), text)) {
        return;
    }
    if (verdicts_ == nullptr) {
        becomeOwner();
        verdicts_ = std::make_unique<Verdicts>();
    }
    const bool isSame = verdicts_->model == model.identity() &&
                        verdicts_->column.first == column->first &&
                        verdicts_->column.texts == column->texts;
    if (!isSame) {
        *verdicts_ = {model.identity(), *column, 0, 0};
    }
    const std::uint64_t bit = verdicts_->bitOf(owner_->object());
    verdicts_->known |= bit;
    verdicts_->isTrue |= verdict ? bit : 0;
}

bool MMRelationalExpr::compareTexts(MMEvaluationContext& context) const {
    std::string leftBuffer;
    std::string rightBuffer;
    const std::string_view left = lhs()->evaluateText(context, leftBuffer);
    MMKeptBytes kept(context);
    kept.addLong(leftBuffer.size());
    const std::string_view right = constantRight_.data() != nullptr
                                       ? constantRight_
                                       : rhs()->evaluateText(context, rightBuffer);
    context.countBytes(std::min(left.size(), right.size()));
    if (op() == MM_EQUAL || op() == MM_NOT_EQUAL) {
        return (left == right) == (op() == MM_EQUAL);
    }
    return holds(left.compare(right) <=> 0);
}

bool MMRelationalExpr::evaluateBoolean(MMEvaluationContext& context) const {
    if (owner_ != nullptr) {
        const MMVerdict verdict = verdictOn(context.getModel(), owner_->object());
        return verdict != MMVerdict::unknown ? verdict == MMVerdict::holds : judge(context);
    }
    if (integerRight_ && !isLongChain()) {
        context.checkDepth();
        return holds(lhs()->evaluateInteger(context) <=> *integerRight_);
    }
    return compareOthers(context);
}

// Apart from what is common, since it needs much of the stack.
[[gnu::noinline]] bool MMRelationalExpr::compareOthers(MMEvaluationContext& context) const {
    if (isLongChain()) {
        return MMOperatorExpr::evaluate(context).toBoolean();
    }
    context.checkDepth();
    if (comparison_ == Comparison::ofTexts) {
        return compareTexts(context);
    }
    if (comparison_ == Comparison::ofIntegers) {
        const int left = lhs()->evaluateInteger(context);
        return holds(left <=> rhs()->evaluateInteger(context));
    }
    const MMValue left = lhs()->evaluate(context);
    MMKeptBytes kept(context);
    kept.addLong(left.ownSize());
    return holds(compareValues(context, left, rhs()->evaluate(context)));
}
