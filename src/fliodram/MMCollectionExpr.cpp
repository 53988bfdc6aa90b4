// Filtering, traversing, mapping and removing duplicates are consumers that stand between the
// collection that they take from and the consumer that they hand on to; nothing is collected. Only
// sorting and reversing need the whole collection first.
#include "fliodram/MMCollectionExpr.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "fliodram/MMObjectSet.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// Hands on the objects for which the predicate is true.
class Filter : public MMObjectConsumer {
public:
    Filter(MMEvaluationContext& context, const MMValueAbsExpr& predicate, MMObjectConsumer& next)
        : context_(context), predicate_(predicate), next_(next) {}

    bool take(MMObjectRange objects) override {
        for (const MMObject& object : objects) {
            context_.step();
            if (predicate_.evaluateBooleanFor(context_, object) && !takeOne(next_, object)) {
                return false;
            }
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    const MMValueAbsExpr& predicate_;
    MMObjectConsumer& next_;
};

/// Hands on what the function yields for each object.
class Traverse : public MMObjectConsumer {
public:
    Traverse(MMEvaluationContext& context, const MMObjectCollectionAbsExpr& function,
             MMObjectConsumer& next)
        : context_(context), function_(function), next_(next) {}

    bool take(MMObjectRange objects) override {
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
class Unique : public MMObjectConsumer {
public:
    Unique(MMEvaluationContext& context, MMObjectConsumer& next) : context_(context), next_(next) {}

    bool take(MMObjectRange objects) override {
        for (const MMObject& object : objects) {
            context_.step();
            if (seen_.insert({object})) {
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
class Map : public MMObjectConsumer {
public:
    Map(MMEvaluationContext& context, const MMValueAbsExpr& function, MMTextConsumer& next)
        : context_(context), function_(function), next_(next) {}

    bool take(MMObjectRange objects) override {
        std::string buffer;
        for (const MMObject object : objects) {
            context_.step();
            next_.take(function_.evaluateFor(context_, object).asText(buffer));
        }
        return true;
    }

private:
    MMEvaluationContext& context_;
    const MMValueAbsExpr& function_;
    MMTextConsumer& next_;
};

int orderOf(bool isLess, bool isGreater) { return isLess ? -1 : (isGreater ? 1 : 0); }

// A total order of values: by kind first, then as they compare, a NaN behind all other reals.
int totalOrder(const MMValue& left, const MMValue& right) {
    if (left.getKind() != right.getKind()) {
        return orderOf(left.getKind() < right.getKind(), true);
    }
    const std::partial_ordering order = left.compare(right);
    if (order == std::partial_ordering::unordered) {
        const bool isLeftNan = left.getReal() != left.getReal();
        const bool isRightNan = right.getReal() != right.getReal();
        return orderOf(isRightNan && !isLeftNan, isLeftNan && !isRightNan);
    }
    return orderOf(order<0, order> 0);
}

}  // namespace

MMFilterExpr::MMFilterExpr(const OrvCyclicPtr<MMValueAbsExpr>& predicate,
                           const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : predicate_(*this, predicate), collection_(*this, collection) {}

bool MMFilterExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Filter filter(context, *predicate_, consumer);
    return collection_->forEach(context, filter);
}

void MMFilterExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMFilterExpr").operand(predicate_.get()).operand(collection_.get()).end();
}

MMTraverseExpr::MMTraverseExpr(const OrvCyclicPtr<MMObjectCollectionAbsExpr>& function,
                               const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : function_(*this, function), collection_(*this, collection) {}

bool MMTraverseExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Traverse traverse(context, *function_, consumer);
    return collection_->forEach(context, traverse);
}

void MMTraverseExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMTraverseExpr").operand(function_.get()).operand(collection_.get()).end();
}

MMSortExpr::MMSortExpr() : collection_(*this) {}

void MMSortExpr::collection(const OrvCyclicPtr<MMObjectCollectionExpr>& collection) {
    collection_ = collection;
}

void MMSortExpr::key(const OrvCyclicPtr<MMValueAbsExpr>& function, bool isAscending) {
    keys_.emplace_back(*this, function, isAscending);
}

// The keys of one object stand side by side.
std::vector<MMValue> MMSortExpr::evaluateKeys(MMEvaluationContext& context,
                                              const std::vector<MMObject>& objects) const {
    std::vector<MMValue> values;
    values.reserve(objects.size() * keys_.size());
    for (const MMObject object : objects) {
        for (const Key& key : keys_) {
            context.step();
            values.push_back(key.function->evaluateFor(context, object));
        }
    }
    return values;
}

bool MMSortExpr::isBefore(const MMValue* left, const MMValue* right) const {
    for (const Key& key : keys_) {
        const int order = totalOrder(*left++, *right++);
        if (order != 0) {
            return key.isAscending ? order < 0 : order > 0;
        }
    }
    return false;
}

bool MMSortExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    const std::vector<MMObject> objects = MMObjectCollector::collect(context, *collection_);
    const std::vector<MMValue> values = evaluateKeys(context, objects);
    std::vector<std::size_t> order(objects.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        context.step();
        return isBefore(&values[left * keys_.size()], &values[right * keys_.size()]);
    });
    std::vector<MMObject> sorted(objects.size());
    std::transform(order.begin(), order.end(), sorted.begin(),
                   [&objects](std::size_t i) { return objects[i]; });
    return consumer.take(rangeOf(sorted));
}

void MMSortExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMSortExpr").operand(collection_.get());
    for (const Key& key : keys_) {
        printer.nested("key").operand(key.function.get()).flag(key.isAscending).end();
    }
    printer.end();
}

MMUniqueExpr::MMUniqueExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection, bool isStable)
    : collection_(*this, collection), isStable_(isStable) {}

bool MMUniqueExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    Unique unique(context, consumer);
    return collection_->forEach(context, unique);
}

void MMUniqueExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUniqueExpr").operand(collection_.get()).flag(isStable_).end();
}

MMReverseExpr::MMReverseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : collection_(*this, collection) {}

bool MMReverseExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    std::vector<MMObject> objects = MMObjectCollector::collect(context, *collection_);
    std::reverse(objects.begin(), objects.end());
    return consumer.take(rangeOf(objects));
}

void MMReverseExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMReverseExpr").operand(collection_.get()).end();
}

MMAllInstancesExpr::MMAllInstancesExpr(const OrvCyclicPtr<MMValueExpr>& className,
                                       const OrvCyclicPtr<MMObjectExpr>& model)
    : className_(*this, className), model_(*this, model) {}

bool MMAllInstancesExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    const MMValue name = className_->evaluate(context);
    std::string buffer;
    const MMKey key = key_.keyOf(
        context.getModel(), name.asText(buffer),
        [](const MMModel& model, std::string_view className) { return model.classKey(className); });
    const MMObject object = model_->evaluate(context);
    if (key == mmUnknownKey || object == mmNoObject) {
        return true;
    }
    std::vector<MMObject> objects;
    return consumer.take(context.getModel().instances(object, key, objects));
}

void MMAllInstancesExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAllInstancesExpr").operand(className_.get()).operand(model_.get()).end();
}

MMMapExpr::MMMapExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
                     const OrvCyclicPtr<MMObjectCollectionExpr>& collection)
    : function_(*this, function), collection_(*this, collection) {}

void MMMapExpr::forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const {
    context.checkDepth();
    Map map(context, *function_, consumer);
    collection_->forEach(context, map);
}

void MMMapExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMMapExpr").operand(function_.get()).operand(collection_.get()).end();
}
