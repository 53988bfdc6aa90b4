// Constants.
#pragma once

#include <optional>

#include "fliodram/MMExpr.h"

/// A value that is the same for every object.
class __attribute__((visibility("default"))) MMConstantExpr : public MMValueExpr {
public:
    explicit MMConstantExpr(const MMValue& value);
    /// A text.
    explicit MMConstantExpr(const char* text);

    const MMValue& getValue() const { return value_; }

    /// The text of an expression that is a text constant; for any other, or none, a view without
    /// data.
    static std::string_view textOf(const MMValueExpr* expression);

    /// The number of an expression that is an integer constant; nothing for any other.
    static std::optional<int> integerOf(const MMValueExpr* expression);

    /// Borrows the text of a text constant from the expression.
    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    int evaluateInteger(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    static const MMValue* valueOf(const MMValueExpr* expression, MMValue::Kind kind);

    MMValue value_;
};
