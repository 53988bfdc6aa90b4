// Operators on values: arithmetic, logic, comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "fliodram/MMColumn.h"
#include "fliodram/MMExpr.h"

/// The base of the operators: a left operand, a number that says which operator, a right operand.
///
/// Left operands that are operators themselves form chains as long as the text of an expression:
/// evaluating and printing a long chain is a loop, from the innermost left operand outward.
class __attribute__((visibility("default"))) MMOperatorExpr : public MMValueExpr {
public:
    /// An expression that is an operator, whose left operand may lead further down; else null.
    static const MMOperatorExpr* from(const MMValueExpr* expression) {
        const bool isOne =
            expression != nullptr && (expression->getBodyKinds() & MM_KIND_OPERATOR) != 0;
        return isOne ? static_cast<const MMOperatorExpr*>(expression) : nullptr;
    }

    MMValue evaluate(MMEvaluationContext& context) const override;
    const MMTextColumn* findColumn(const MMModel& model) const override {
        return isLongChain() ? nullptr : lhs_->findColumn(model);
    }
    void print(MMTargetPrinter& printer) const override;

    const OrvCyclicOperand<MMValueExpr>& lhs() const { return lhs_; }
    const OrvCyclicOperand<MMValueExpr>& rhs() const { return rhs_; }

protected:
    /// Both operands, of which the right one may be empty; the kind of all values, if it is known.
    /// For final classes that own nothing.
    [[gnu::always_inline]] MMOperatorExpr(const OrvCyclicPtr<MMValueExpr>& lhs, int op,
                                          const OrvCyclicPtr<MMValueExpr>& rhs,
                                          std::optional<MMValue::Kind> kind)
        : MMValueExpr(kind, Ownership::nothing),
          lhs_(*this, lhs),
          rhs_(*this, rhs),
          op_(static_cast<std::uint8_t>(op)) {
        const MMOperatorExpr* const left = from(lhs.get());
        chainLength_ += left != nullptr ? left->chainLength_ : 0;
        addBodyKinds(MM_KIND_OPERATOR);
    }

    /// Replaces the value of the left operand by the value of the whole.
    virtual void apply(MMEvaluationContext& context, MMValue& value) const = 0;
    virtual const char* className() const = 0;

    /// Whether both operands are there, and all their values are known to be of that kind.
    static bool areAlways(MMValue::Kind kind, const MMValueExpr* left, const MMValueExpr* right) {
        return left != nullptr && right != nullptr && left->isAlways(kind) && right->isAlways(kind);
    }
    int op() const { return op_; }
    /// True when the chain of left operands is too long to recurse into.
    bool isLongChain() const { return chainLength_ > longestRecursion; }
    /// This operator and the left operands that are operators, from the outermost inward.
    const std::vector<const MMOperatorExpr*>& chain() const;

private:
    static constexpr std::size_t longestRecursion = 16;

    OrvCyclicOperand<MMValueExpr> lhs_;
    OrvCyclicOperand<MMValueExpr> rhs_;
    mutable std::unique_ptr<std::vector<const MMOperatorExpr*>> chain_;  // once it is asked for
    std::uint32_t chainLength_ = 1;
    std::uint8_t op_;
};

/// Arithmetic operators; subtraction without a right operand is negation.
enum MMArithOp { MM_ADD = 1, MM_SUBTRACT = 2, MM_MULTIPLY = 3, MM_DIVIDE = 4 };

/// Arithmetic on two integers or on two reals, and joining of texts by addition.
///
/// Integers have 32 bits; a result that does not fit, and division by zero, are errors, and
/// division drops the fraction. Reals follow IEEE 754. An integer beside a real counts as a real.
class __attribute__((visibility("default"))) MMArithmeticExpr final : public MMOperatorExpr {
public:
    /// With an empty `rhs` and MM_SUBTRACT, the negation of `lhs`.
    MMArithmeticExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMArithOp op,
                     const OrvCyclicPtr<MMValueExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    void appendText(MMEvaluationContext& context, std::string& text) const override;

protected:
    void apply(MMEvaluationContext& context, MMValue& value) const override;
    const char* className() const override;

private:
    static std::optional<MMValue::Kind> kindOf(const MMValueExpr* left, int op,
                                               const MMValueExpr* right);
    void combine(MMEvaluationContext& context, MMValue& value, const MMValue& right) const;
};

/// Logical operators; "not" has no right operand.
enum MMLogOp { MM_AND = 1, MM_OR = 2, MM_NOT = 3, MM_IMPLIES = 4 };

/// Logic. The right operand is evaluated only where the left one does not decide.
class __attribute__((visibility("default"))) MMBooleanExpr final : public MMOperatorExpr {
public:
    /// With an empty `rhs` and MM_NOT, the negation of `lhs`.
    MMBooleanExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMLogOp op,
                  const OrvCyclicPtr<MMValueExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    bool isConjunction() const { return op() == MM_AND; }

protected:
    void apply(MMEvaluationContext& context, MMValue& value) const override;
    const char* className() const override;

private:
    bool combine(MMEvaluationContext& context, bool left) const;
};

/// Comparisons of values and of objects; the order of the numbers is not that of sets.
enum MMRelOp {
    MM_EQUAL = 1,
    MM_NOT_EQUAL = 2,
    MM_LESS = 3,
    MM_GREATER = 4,
    MM_LESS_EQUAL = 5,
    MM_GREATER_EQUAL = 6
};

/// What is known of a condition for an object without evaluating it.
enum class MMVerdict : std::uint8_t { unknown, holds, fails };

/// Comparison of two values, as MMValue::compare() has it.
class __attribute__((visibility("default"))) MMRelationalExpr final : public MMOperatorExpr {
public:
    MMRelationalExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMRelOp op,
                     const OrvCyclicPtr<MMValueExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;

    /// The variable whose object's text is compared with a constant, if that is all; else null.
    /// Such a comparison does not fail.
    const MMObjectVarExpr* getComparedObject() const { return owner_; }
    /// What was found for another object that has the same text in the same column, if anything.
    /// Only for a comparison that has an owner.
    MMVerdict verdictOn(const MMModel& model, MMObject object) const {
        const std::uint64_t bit = verdicts_ != nullptr && verdicts_->model == model.identity()
                                      ? verdicts_->bitOf(object) & verdicts_->known
                                      : 0;
        return bit == 0                         ? MMVerdict::unknown
               : (verdicts_->isTrue & bit) != 0 ? MMVerdict::holds
                                                : MMVerdict::fails;
    }

protected:
    void apply(MMEvaluationContext& context, MMValue& value) const override;
    const char* className() const override;

private:
    enum class Comparison : std::uint8_t { ofTexts, ofIntegers, ofValues };

    // What comparing with the constant gives for the texts of a column that lists them.
    struct Verdicts {
        // The bit of an object's text; 0 where the column does not list it among the first.
        std::uint64_t bitOf(MMObject object) const {
            constexpr unsigned most = 64;
            const std::uint64_t index = object - column.first;
            if (index >= column.count) {
                return 0;
            }
            const unsigned code = column.codes != nullptr ? column.codes[index] : 0;
            return code < most ? std::uint64_t{1} << code : 0;
        }

        std::uint64_t model = 0;  // whose column it is
        MMTextColumn column;
        std::uint64_t known = 0;
        std::uint64_t isTrue = 0;
    };

    static Comparison chooseComparison(const MMValueExpr* left, const MMValueExpr* right) {
        if (areAlways(MMValue::Kind::text, left, right)) {
            return Comparison::ofTexts;
        }
        return areAlways(MMValue::Kind::integer, left, right) ? Comparison::ofIntegers
                                                              : Comparison::ofValues;
    }
    bool judge(MMEvaluationContext& context) const;
    void remember(const MMModel& model, bool verdict) const;
    bool compareOthers(MMEvaluationContext& context) const;
    bool compareTexts(MMEvaluationContext& context) const;
    bool holds(std::partial_ordering order) const;

    Comparison comparison_;
    std::string_view constantRight_;   // the right operand where it is a text constant
    std::optional<int> integerRight_;  // an integer constant with which integers are compared
    const MMObjectVarExpr* owner_;     // whose text is compared with it, if that is all
    mutable std::unique_ptr<Verdicts> verdicts_;  // once there are any
};
