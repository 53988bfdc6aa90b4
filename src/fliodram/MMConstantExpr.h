// Constants.
#pragma once

#include <cstddef>
#include <optional>

#include "fliodram/MMExpr.h"

/// A value that is the same for every object.
class __attribute__((visibility("default"))) MMConstantExpr final : public MMValueExpr {
public:
    explicit MMConstantExpr(const MMValue& value);
    /// A text.
    explicit MMConstantExpr(const char* text) : MMConstantExpr(MMValue(text)) {}
    MMConstantExpr(const char* text, std::size_t size)
        : MMValueExpr(MMValue::Kind::text, Ownership::nothing), value_(text, size) {
        addBodyKinds(MM_KIND_CONSTANT);
        if (!isInside(*this, value_.getText().data())) {
            becomeOwner();
        }
    }

    const MMValue& getValue() const { return value_; }

    /// The text of an expression that is a text constant; for any other, or none, a view without
    /// data.
    static std::string_view textOf(const MMValueExpr* expression) {
        const MMValue* const value = valueOf(expression, MMValue::Kind::text);
        return value != nullptr ? value->getText() : std::string_view();
    }

    /// The number of an expression that is an integer constant; nothing for any other.
    static std::optional<int> integerOf(const MMValueExpr* expression) {
        const MMValue* const value = valueOf(expression, MMValue::Kind::integer);
        return value != nullptr ? std::optional<int>(value->getInteger()) : std::nullopt;
    }

    /// Borrows the text of a text constant from the expression.
    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    int evaluateInteger(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    // The value of an expression that is a constant of a kind; else null.
    static const MMValue* valueOf(const MMValueExpr* expression, MMValue::Kind kind) {
        const bool isConstant = expression != nullptr && expression->isAlways(kind) &&
                                (expression->getBodyKinds() & MM_KIND_CONSTANT) != 0;
        return isConstant ? &static_cast<const MMConstantExpr*>(expression)->value_ : nullptr;
    }

    MMValue value_;
};
