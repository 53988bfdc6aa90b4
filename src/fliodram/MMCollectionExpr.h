// Collections made from collections, and the collection of all objects of a class.
#pragma once

#include <vector>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMExpr.h"
#include "fliodram/MMKeyCache.h"

/// The objects for which the predicate is true, in order.
class __attribute__((visibility("default"))) MMFilterExpr : public MMObjectCollectionExpr {
public:
    MMFilterExpr(const OrvCyclicPtr<MMValueAbsExpr>& predicate,
                 const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMValueAbsExpr> predicate_;
    OrvCyclicMember<MMObjectCollectionExpr> collection_;
};

/// The collections that the function yields for each object, one after the other, duplicates
/// included.
class __attribute__((visibility("default"))) MMTraverseExpr : public MMObjectCollectionExpr {
public:
    MMTraverseExpr(const OrvCyclicPtr<MMObjectCollectionAbsExpr>& function,
                   const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMObjectCollectionAbsExpr> function_;
    OrvCyclicMember<MMObjectCollectionExpr> collection_;
};

/// The collection without duplicates: the first of each stays, in order. The flag, which asks for
/// the order to be kept, makes no difference.
class __attribute__((visibility("default"))) MMUniqueExpr : public MMObjectCollectionExpr {
public:
    MMUniqueExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection, bool isStable);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMObjectCollectionExpr> collection_;
    bool isStable_;
};

/// The objects in reverse order.
class __attribute__((visibility("default"))) MMReverseExpr : public MMObjectCollectionExpr {
public:
    explicit MMReverseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMObjectCollectionExpr> collection_;
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
    OrvCyclicMember<MMValueExpr> className_;
    MMObjectOperand model_;
    mutable MMKeyCache key_;
};

/// The value of a function for each object, as strings, in order.
class __attribute__((visibility("default"))) MMMapExpr : public MMStringCollectionExpr {
public:
    MMMapExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
              const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMValueAbsExpr> function_;
    OrvCyclicMember<MMObjectCollectionExpr> collection_;
};
