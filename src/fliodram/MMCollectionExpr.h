// Collections made from collections, and the collection of all objects of a class.
#pragma once

#include <vector>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMExpr.h"
#include "fliodram/MMKeyCache.h"

/// The objects for which the predicate is true, in order.
class __attribute__((visibility("default"))) MMFilterExpr final : public MMObjectCollectionExpr {
public:
    MMFilterExpr(const OrvCyclicPtr<MMValueAbsExpr>& predicate,
                 const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueAbsExpr> predicate_;
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
};

/// The collections that the function yields for each object, one after the other, duplicates
/// included.
class __attribute__((visibility("default"))) MMTraverseExpr final : public MMObjectCollectionExpr {
public:
    MMTraverseExpr(const OrvCyclicPtr<MMObjectCollectionAbsExpr>& function,
                   const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionAbsExpr> function_;
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
};

/// The collection without duplicates: the first of each stays, in order. The flag, which asks for
/// the order to be kept, makes no difference.
class __attribute__((visibility("default"))) MMUniqueExpr final : public MMObjectCollectionExpr {
public:
    MMUniqueExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection, bool isStable);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
    bool isStable_;
};

/// The objects in reverse order.
class __attribute__((visibility("default"))) MMReverseExpr final : public MMObjectCollectionExpr {
public:
    explicit MMReverseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
};

/// All objects of exactly the named class in the model that an object belongs to; none where there
/// is no object.
class __attribute__((visibility("default"))) MMAllInstancesExpr : public MMObjectCollectionExpr {
public:
    MMAllInstancesExpr(const OrvCyclicPtr<MMValueExpr>& className,
                       const OrvCyclicPtr<MMObjectExpr>& model);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    bool findRange(MMEvaluationContext& context, MMObjectRange& range,
                   std::vector<MMObject>& buffer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueExpr> className_;
    MMObjectOperand model_;
    mutable MMKeyCache key_;
};

/// The value of a function for each object, as strings, in order.
class __attribute__((visibility("default"))) MMMapExpr final : public MMStringCollectionExpr {
public:
    MMMapExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
              const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueAbsExpr> function_;
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
};
