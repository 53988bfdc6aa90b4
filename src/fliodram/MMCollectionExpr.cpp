// Filtering, traversing, mapping and removing duplicates are consumers that stand between the
// collection that they take from and the consumer that they hand on to; nothing is collected. Only
// reversing needs the whole collection first.
#include "fliodram/MMCollectionExpr.h"

#include <algorithm>
#include <string>
#include <vector>

#include "fliodram/MMObjectSet.h"
#include "fliodram/MMReadAhead.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Hands on the objects for which the predicate is true.
class Filter final : public MMObjectConsumer {
public:
    Filter(MMEvaluationContext& context, const MMValueAbsExpr& predicate, MMObjectConsumer& next)
        : context_(context), predicate_(predicate), next_(next) {}

    bool take(const MMObjectRange& objects) override {
        MMReadAhead ahead(objects);
        for (const MMObject& object : objects) {
            context_.step();
            if (predicate_.evaluateBooleanFor(context_, object) && !takeOne(next_, object)) {
                return false;
            }
            ahead.after(object, predicate_, context_.getModel());
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    const MMValueAbsExpr& predicate_;
    MMObjectConsumer& next_;
};

/// Hands on what the function yields for each object.
class Traverse final : public MMObjectConsumer {
public:
    Traverse(MMEvaluationContext& context, const MMObjectCollectionAbsExpr& function,
             MMObjectConsumer& next)
        : context_(context), function_(function), next_(next) {}

    bool take(const MMObjectRange& objects) override {
        for (const MMObject object : objects) {
            context_.step();
            if (!function_.forEachOf(context_, object, next_)) {
                return false;
            }
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    const MMObjectCollectionAbsExpr& function_;
    MMObjectConsumer& next_;
};

/// Hands on each object the first time.
class Unique final : public MMObjectConsumer {
public:
    Unique(MMEvaluationContext& context, MMObjectConsumer& next) : context_(context), next_(next) {}

    bool take(const MMObjectRange& objects) override {
        for (const MMObject& object : objects) {
            context_.step();
            if (seen_.insert(context_, {object})) {
                context_.checkCollectionSize(seen_.size());
                if (!takeOne(next_, object)) {
                    return false;
                }
            }
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    MMObjectConsumer& next_;
    MMKeySet<MMObjectKey> seen_;
};

/// Hands on the value of the function for each object as a text.
class Map final : public MMObjectConsumer {
public:
    Map(MMEvaluationContext& context, const MMValueAbsExpr& function, MMTextConsumer& next)
        : context_(context), function_(function), next_(next) {}

    bool take(const MMObjectRange& objects) override {
        std::string buffer;
        for (const MMObject object : objects) {
            context_.step();
            next_.take(function_.evaluateTextFor(context_, object, buffer));
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    const MMValueAbsExpr& function_;
    MMTextConsumer& next_;
};

}  // namespace

MMFilterExpr::MMFilterExpr(const OrvCyclicPtr<MMValueAbsExpr>& predicate,
                           const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMObjectCollectionExpr(Ownership::nothing),
      predicate_(*this, predicate),
      collection_(*this, collection) {}

bool MMFilterExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Filter filter(context, *predicate_, consumer);
    return forEachObject(context, *collection_, filter);
}

void MMFilterExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMFilterExpr").operand(predicate_.get()).operand(collection_.get()).end();
}

MMTraverseExpr::MMTraverseExpr(const OrvCyclicPtr<MMObjectCollectionAbsExpr>& function,
                               const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMObjectCollectionExpr(Ownership::nothing),
      function_(*this, function),
      collection_(*this, collection) {}

bool MMTraverseExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Traverse traverse(context, *function_, consumer);
    return forEachObject(context, *collection_, traverse);
}

void MMTraverseExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMTraverseExpr").operand(function_.get()).operand(collection_.get()).end();
}

MMUniqueExpr::MMUniqueExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection, bool isStable)
    : MMObjectCollectionExpr(Ownership::nothing),
      collection_(*this, collection),
      isStable_(isStable) {}

bool MMUniqueExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Unique unique(context, consumer);
    return forEachObject(context, *collection_, unique);
}

void MMUniqueExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUniqueExpr").operand(collection_.get()).flag(isStable_).end();
}

MMReverseExpr::MMReverseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMObjectCollectionExpr(Ownership::nothing), collection_(*this, collection) {}

bool MMReverseExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    std::vector<MMObject> objects = MMObjectCollector::collect(context, *collection_);
    MMKeptBytes kept(context);
    kept.add(objects.size() * sizeof(MMObject));
    std::reverse(objects.begin(), objects.end());
    return consumer.take(rangeOf(objects));
}

void MMReverseExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMReverseExpr").operand(collection_.get()).end();
}

MMAllInstancesExpr::MMAllInstancesExpr(const OrvCyclicPtr<MMValueExpr>& className,
                                       const OrvCyclicPtr<MMObjectExpr>& model)
    : className_(*this, className), model_(*this, model) {}

bool MMAllInstancesExpr::findRange(MMEvaluationContext& context, MMObjectRange& range,
                                   std::vector<MMObject>& buffer) const {
    context.checkDepth();
    std::string nameBuffer;
    const std::string_view name = className_->evaluateText(context, nameBuffer);
    context.countBytes(name.size());
    const MMKey key = key_.keyOf(
        context.getModel(), name,
        [](const MMModel& model, std::string_view className) { return model.classKey(className); });
    const MMObject object = model_.evaluate(context);
    if (key != mmUnknownKey && object != mmNoObject) {
        range = context.getModel().instances(object, key, buffer);
        context.countBytes(buffer.size() * sizeof(MMObject));
    }
    return true;
}

bool MMAllInstancesExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    std::vector<MMObject> buffer;
    MMObjectRange range;
    findRange(context, range, buffer);
    return range.size() == 0 || consumer.take(range);
}

void MMAllInstancesExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAllInstancesExpr").operand(className_.get()).operand(model_.get()).end();
}

MMMapExpr::MMMapExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
                     const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : MMStringCollectionExpr(Ownership::nothing),
      function_(*this, function),
      collection_(*this, collection) {}

void MMMapExpr::forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const {
    context.checkDepth();
    Map map(context, *function_, consumer);
    forEachObject(context, *collection_, map);
}

void MMMapExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMMapExpr").operand(function_.get()).operand(collection_.get()).end();
}
