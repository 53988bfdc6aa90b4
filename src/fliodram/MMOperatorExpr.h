// Operators on values: arithmetic, logic, comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "fliodram/MMExpr.h"

/// The base of the operators: a left operand, a number that says which operator, a right operand.
///
/// Left operands that are operators themselves form chains as long as the text of an expression:
/// evaluating and printing a long chain is a loop, from the innermost left operand outward.
class __attribute__((visibility("default"))) MMOperatorExpr : public MMValueExpr {
public:
    ~MMOperatorExpr() override;

    MMValue evaluate(MMEvaluationContext& context) const override;
    const MMOperatorExpr* asOperator() const override { return this; }
    void print(MMTargetPrinter& printer) const override;

    const OrvCyclicMember<MMValueExpr>& lhs() const { return lhs_; }
    const OrvCyclicMember<MMValueExpr>& rhs() const { return rhs_; }

protected:
    /// Both operands, of which the right one may be empty; the kind of all values, if it is known.
    MMOperatorExpr(const OrvCyclicPtr<MMValueExpr>& lhs, int op,
                   const OrvCyclicPtr<MMValueExpr>& rhs, std::optional<MMValue::Kind> kind);

    /// Replaces the value of the left operand by the value of the whole.
    virtual void apply(MMEvaluationContext& context, MMValue& value) const = 0;
    virtual const char* className() const = 0;

    int op() const { return op_; }
    /// True when the chain of left operands is too long to recurse into.
    bool isLongChain() const { return chainLength_ > longestRecursion; }
    /// This operator and the left operands that are operators, from the outermost inward.
    const std::vector<const MMOperatorExpr*>& chain() const;

private:
    static constexpr std::size_t longestRecursion = 16;

    OrvCyclicMember<MMValueExpr> lhs_;
    int op_;
    OrvCyclicMember<MMValueExpr> rhs_;
    std::size_t chainLength_;
    mutable std::unique_ptr<std::vector<const MMOperatorExpr*>> chain_;  // once it is asked for
};

/// Arithmetic operators; subtraction without a right operand is negation.
enum MMArithOp { MM_ADD = 1, MM_SUBTRACT = 2, MM_MULTIPLY = 3, MM_DIVIDE = 4 };

/// Arithmetic on two integers or on two reals, and joining of texts by addition.
///
/// Integers have 32 bits; a result that does not fit, and division by zero, are errors, and
/// division drops the fraction. Reals follow IEEE 754. An integer beside a real counts as a real.
class __attribute__((visibility("default"))) MMArithmeticExpr : public MMOperatorExpr {
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
    void combine(MMEvaluationContext& context, MMValue& value, const MMValue& right) const;
};

/// Logical operators; "not" has no right operand.
enum MMLogOp { MM_AND = 1, MM_OR = 2, MM_NOT = 3, MM_IMPLIES = 4 };

/// Logic. The right operand is evaluated only where the left one does not decide.
class __attribute__((visibility("default"))) MMBooleanExpr : public MMOperatorExpr {
public:
    /// With an empty `rhs` and MM_NOT, the negation of `lhs`.
    MMBooleanExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMLogOp op,
                  const OrvCyclicPtr<MMValueExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;

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

/// Comparison of two values, as MMValue::compare() has it.
class __attribute__((visibility("default"))) MMRelationalExpr : public MMOperatorExpr {
public:
    MMRelationalExpr(const OrvCyclicPtr<MMValueExpr>& lhs, MMRelOp op,
                     const OrvCyclicPtr<MMValueExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;

protected:
    void apply(MMEvaluationContext& context, MMValue& value) const override;
    const char* className() const override;

private:
    enum class Comparison : std::uint8_t { withCodes, ofTexts, ofIntegers, ofValues };

    // What the comparison with a constant is for the texts of a list of a model, by their numbers.
    struct Verdicts {
        const std::string_view* texts = nullptr;
        std::uint64_t model = 0;
        std::uint64_t known = 0;  // a bit each
        std::uint64_t isTrue = 0;
    };

    static Comparison chooseComparison(const MMValueExpr* left, const MMValueExpr* right);
    bool compareCode(const MMModel& model, const std::string_view* texts, std::size_t code) const;
    bool compareTexts(MMEvaluationContext& context) const;
    bool compareTexts(std::string_view left, std::string_view right) const;
    bool holds(std::partial_ordering order) const;

    Comparison comparison_;
    std::string_view constantRight_;  // the right operand where it is a text constant
    mutable Verdicts verdicts_;
};
