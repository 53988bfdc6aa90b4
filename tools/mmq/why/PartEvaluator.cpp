#include "why/PartEvaluator.h"

#include <algorithm>
#include <stdexcept>

#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectSet.h"

namespace mmq {

namespace {

/// Keeps the texts that it takes.
class TextCollector : public MMTextConsumer {
public:
    void take(std::string_view text) override { texts.emplace_back(text); }
    std::vector<std::string> texts;
};

/// Keeps the objects up to the first one that is wanted.
class Search : public MMObjectConsumer {
public:
    Search(PartElements& elements, const std::function<bool(MMObject)>& isWanted)
        : elements_(elements), isWanted_(isWanted) {}

    bool take(const MMObjectRange& objects) override {
        for (const MMObject object : objects) {
            elements_.objects.push_back(object);
            if (isWanted_(object)) {
                elements_.hasFound = true;
                return false;
            }
        }
        return true;
    }

private:
    PartElements& elements_;
    const std::function<bool(MMObject)>& isWanted_;
};

PartValue evaluateTarget(MMEvaluationContext& context, const OrvCyclicPtrBody* target) {
    if (const auto* const value = dynamic_cast<const MMValueExpr*>(target)) {
        MMValue result = value->evaluate(context);
        result.own();
        return result;
    }
    if (const auto* const object = dynamic_cast<const MMObjectExpr*>(target)) {
        return object->evaluate(context);
    }
    if (const auto* const objects = dynamic_cast<const MMObjectCollectionExpr*>(target)) {
        return MMObjectCollector::collect(context, *objects);
    }
    TextCollector collector;
    dynamic_cast<const MMStringCollectionExpr&>(*target).forEach(context, collector);
    return std::move(collector.texts);
}

}  // namespace

bool isBoolean(const PartValue& value, bool expected) {
    const MMValue* const found = std::get_if<MMValue>(&value);
    return found != nullptr && found->getKind() == MMValue::Kind::boolean &&
           found->getBoolean() == expected;
}

PartEvaluator::PartEvaluator(const SourceMap& map, MMEvaluationContext& context)
    : map_(map),
      context_(context),
      limits_(context.getLimits()),
      deadline_(Clock::now() + std::chrono::duration_cast<Clock::duration>(limits_.time)) {}

PartEvaluator::~PartEvaluator() { context_.setLimits(limits_); }

// Parts that look at no clock themselves may be many.
MMEvaluationContext& PartEvaluator::begin() {
    if (limits_.time.count() > 0) {
        const Clock::time_point now = Clock::now();
        if (now >= deadline_) {
            throwLogged(MMEvaluationError(MMEvaluationError::Kind::timeLimit,
                                          "The explanation takes longer than its time limit."));
        }
        MMEvaluationLimits limits = limits_;
        limits.time = std::chrono::duration_cast<std::chrono::nanoseconds>(deadline_ - now);
        context_.setLimits(limits);
    }
    context_.begin();
    return context_;
}

PartElements PartEvaluator::elementsOf(const ASTNode& node,
                                       const std::function<bool(MMObject)>& isWanted) {
    PartElements elements;
    Search search(elements, isWanted);
    try {
        targetOf<MMObjectCollectionExpr>(node)->forEach(begin(), search);
    } catch (const MMEvaluationError& error) {
        if (error.isLimit()) {
            throw;
        }
        elements.hasFailed = true;
    }
    return elements;
}

PartValue PartEvaluator::evaluate(const ASTNode& node) {
    const OrvCyclicPtrBody* const target = map_.targetOf(node);
    if (target == nullptr) {
        throw std::logic_error("A part of the expression has no target.");
    }
    try {
        return evaluateTarget(begin(), target);
    } catch (const MMEvaluationError& error) {
        if (error.isLimit()) {
            throw;
        }
        return PartFailure{error.what()};
    }
}

MMCachedExpr* PartEvaluator::cacheOf(const ASTNode& let) const {
    return dynamic_cast<MMCachedExpr*>(map_.variableOf(let));
}

}  // namespace mmq
