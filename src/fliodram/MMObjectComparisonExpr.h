// Comparisons of objects and of collections of objects.
#pragma once

#include "fliodram/MMExpr.h"
#include "fliodram/MMObjectVarExpr.h"
#include "fliodram/MMOperatorExpr.h"

/// Whether two objects are one and the same (MM_EQUAL) or not (MM_NOT_EQUAL). No object is the
/// same as no object.
class __attribute__((visibility("default"))) MMObjectEqualityExpr final : public MMValueExpr {
public:
    MMObjectEqualityExpr(const OrvCyclicPtr<MMObjectExpr>& lhs, MMRelOp op,
                         const OrvCyclicPtr<MMObjectExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMObjectOperand lhs_;
    MMRelOp op_;
    MMObjectOperand rhs_;
};

/// Comparisons of sets; the order of the numbers is not that of values.
enum MMSetOp { MM_SET_EQUAL = 1, MM_SET_NOT_EQUAL = 2, MM_PROPER_SUBSET = 3, MM_SUBSET = 4 };

/// Comparison of two collections as sets: neither order nor duplicates count.
class __attribute__((visibility("default"))) MMObjectSetExpr final : public MMValueExpr {
public:
    MMObjectSetExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& lhs, MMSetOp op,
                    const OrvCyclicPtr<MMObjectCollectionExpr>& rhs);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionExpr> lhs_;
    MMSetOp op_;
    OrvCyclicOperand<MMObjectCollectionExpr> rhs_;
};
