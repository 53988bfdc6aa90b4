// Collections in the order of keys.
#pragma once

#include <deque>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMExpr.h"

/// The collection ordered by its keys, the first key first. Objects that all keys find equal keep
/// their order. Numbers are ordered as numbers, a NaN behind all of them; false stands before
/// true; texts are ordered by their bytes. Each key is evaluated once an object.
class __attribute__((visibility("default"))) MMSortExpr : public MMObjectCollectionExpr {
public:
    MMSortExpr();
    void collection(const OrvCyclicPtr<MMObjectCollectionExpr>& collection);
    /// Adds a key, ascending or descending.
    void key(const OrvCyclicPtr<MMValueAbsExpr>& function, bool isAscending);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    struct __attribute__((visibility("hidden"))) Key {
        Key(const OrvCyclicPtrBody& holder, const OrvCyclicPtr<MMValueAbsExpr>& keyFunction,
            bool ascending)
            : function(holder, keyFunction), isAscending(ascending) {}
        OrvCyclicOperand<MMValueAbsExpr> function;
        bool isAscending;
    };

    class __attribute__((visibility("hidden"))) Sorting;

    OrvCyclicMember<MMObjectCollectionExpr> collection_;
    std::deque<Key> keys_;
};
