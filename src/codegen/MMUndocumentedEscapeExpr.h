// The expression that escapes a text.
#pragma once

#include "fliodram/MMExpr.h"

/// Its operand as the body of a quoted text: a tab becomes \t, a double quote and a backslash are
/// preceded by a backslash, and a line feed becomes \r\n, since what reads such texts wants both.
/// Other characters stay; the text ends at its first NUL. The one expression that the compiler
/// adds to the target library.
class MMUndocumentedEscapeExpr : public MMValueExpr {
public:
    explicit MMUndocumentedEscapeExpr(const OrvCyclicPtr<MMValueExpr>& operand);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueExpr> operand_;
};
