// Tests of the objects of a collection.
#pragma once

#include "fliodram/MMExpr.h"
#include "fliodram/MMObjectVarExpr.h"

class MMAssociationExpr;

/// The base of the quantifiers: a predicate is evaluated with the variable bound to one object
/// after the other, as many as decide the answer.
class __attribute__((visibility("default"))) MMQuantifierExpr : public MMValueExpr {
public:
    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

protected:
    /// `decisive` is the value of the predicate that decides; the quantifier has it then.
    MMQuantifierExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
                     const OrvCyclicPtr<MMValueExpr>& predicate,
                     const OrvCyclicPtr<MMObjectVarExpr>& variable, bool decisive);

private:
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
    const MMAssociationExpr* association_;  // the collection, if it is one
    OrvCyclicOperand<MMValueExpr> predicate_;
    OrvCyclicOperand<MMObjectVarExpr> variable_;
    bool decisive_;
};

/// True when the predicate holds for every object.
class __attribute__((visibility("default"))) MMAllExpr final : public MMQuantifierExpr {
public:
    MMAllExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
              const OrvCyclicPtr<MMValueExpr>& predicate,
              const OrvCyclicPtr<MMObjectVarExpr>& variable);
    ~MMAllExpr() override;
};

/// True when the predicate holds for at least one object.
class __attribute__((visibility("default"))) MMSomeExpr final : public MMQuantifierExpr {
public:
    MMSomeExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection,
               const OrvCyclicPtr<MMValueExpr>& predicate,
               const OrvCyclicPtr<MMObjectVarExpr>& variable);
    ~MMSomeExpr() override;
};
