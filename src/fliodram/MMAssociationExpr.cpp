// A path of one step is a loop over its targets. Any other path is a run; see MMTraversalRun.h.
#include "fliodram/MMAssociationExpr.h"

#include <unordered_set>
#include <vector>

#include "fliodram/MMTargetPrinter.h"
#include "fliodram/MMTraversalRun.h"
#include "foundation/OrvConverter.h"

namespace {

// Hands on the targets that the condition of a step admits, each of which is listed once.
bool forEachAdmitted(MMEvaluationContext& context, const MMAssociationTraversal& step,
                     const MMObjectRange& targets, MMObjectConsumer& consumer) {
    for (const MMObject* next = targets.first; step.findAdmitted(context, next, targets.last);
         ++next) {
        if (!takeOne(consumer, *next)) {
            return false;
        }
    }
    return true;
}

// The number of targets before the first that stands among those before it.
std::size_t countDistinct(MMEvaluationContext& context, const MMObjectRange& targets,
                          MMKeySet<MMObjectKey>& met) {
    for (const MMObject& object : targets) {
        context.step();
        if (!met.insert(context, {object})) {
            return met.size();
        }
    }
    return targets.size();
}

// The targets, each once: a range of `kept` where some of them are listed twice.
MMObjectRange distinct(MMEvaluationContext& context, MMTraversalState& state, MMObjectRange targets,
                       std::vector<MMObject>& kept) {
    MMTraversalLease lease(state);
    MMKeySet<MMObjectKey>& met = lease.memory().reached;
    const std::size_t count = countDistinct(context, targets, met);
    targets.isDistinct = true;
    if (count == targets.size()) {
        return targets;
    }
    kept.assign(targets.first, targets.first + count);
    for (const MMObject* object = targets.first + count; object != targets.last; ++object) {
        context.step();
        if (met.insert(context, {*object})) {
            kept.push_back(*object);
        }
    }
    return {kept.data(), kept.data() + kept.size(), true};
}

}  // namespace

MMAssociationTraversal::MMAssociationTraversal(const OrvString& associationName, bool addToResult)
    : MMTarget(Ownership::nothing),
      name_(associationName),
      addToResult_(addToResult),
      condition_(*this),
      child_(*this),
      sibling_(*this) {
    addBodyKinds(MM_KIND_TRAVERSAL);
    if (!isInside(*this, name_.data())) {
        becomeOwner();
    }
}

void MMAssociationTraversal::setChild(const OrvCyclicPtr<MMAssociationTraversal>& child) {
    child_ = child;
}

void MMAssociationTraversal::setSibling(const OrvCyclicPtr<MMAssociationTraversal>& sibling) {
    sibling_ = sibling;
}

void MMAssociationTraversal::setCondition(const OrvCountedPtr<MMValueAbsExpr>& condition) {
    condition_ = OrvConverter<MMValueAbsExpr, MMValueAbsExpr>::toCyclic(condition);
}

void MMAssociationTraversal::setDepthFirstEvaluation(bool depthFirst) { depthFirst_ = depthFirst; }

std::vector<const MMAssociationTraversal*> MMAssociationTraversal::alternatives() const {
    std::vector<const MMAssociationTraversal*> found;
    std::unordered_set<const MMAssociationTraversal*> met;
    for (const MMAssociationTraversal* step = this; step != nullptr && met.insert(step).second;
         step = step->sibling_.get()) {
        found.push_back(step);
    }
    return found;
}

void MMAssociationTraversal::print(MMTargetPrinter& printer) const { printer.shared(*this, 't'); }

void MMAssociationTraversal::printCall(MMTargetPrinter& printer) const {
    printer.begin("MMAssociationTraversal").text(name_.view()).flag(addToResult_);
    if (depthFirst_) {
        printer.flag(true, "depthFirst");
    }
    const auto part = [&printer](const MMTarget* target, const char* name) {
        if (target != nullptr) {
            printer.operand(target, name);
        }
    };
    part(condition_.get(), "condition");
    part(child_.get(), "child");
    part(sibling_.get(), "sibling");
    printer.end();
}

MMAssociationExpr::MMAssociationExpr(const OrvCyclicPtr<MMAssociationTraversal>& traversal,
                                     const OrvCyclicPtr<MMObjectExpr>& object)
    : MMObjectCollectionExpr(Ownership::nothing),
      traversal_(*this, traversal),
      object_(*this, object) {
    addBodyKinds(MM_KIND_ASSOCIATION);
}

MMAssociationExpr::~MMAssociationExpr() = default;

MMTraversalState& MMAssociationExpr::state() const {
    if (state_ == nullptr) {
        becomeOwner();
        state_ = std::make_unique<MMTraversalState>(*traversal_);
    }
    return *state_;
}

bool MMAssociationExpr::findRange(MMEvaluationContext& context, MMObjectRange& range,
                                  std::vector<MMObject>& buffer) const {
    if (!traversal_->isPlain()) {
        return false;
    }
    context.checkDepth();
    traversal_->findTargets(context, object_.evaluate(context), range, buffer);
    if (!range.isDistinct && range.size() > 1) {
        std::vector<MMObject> kept;
        range = distinct(context, state(), range, kept);
        if (!kept.empty()) {
            buffer.swap(kept);
        }
    }
    return true;
}

bool MMAssociationExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    if (!traversal_->isSingle()) {
        const MMObject object = object_.evaluate(context);
        return object == mmNoObject || runTraversal(context, state(), object, consumer);
    }
    std::vector<MMObject> buffer;
    std::vector<MMObject> kept;
    MMObjectRange targets;
    traversal_->findTargets(context, object_.evaluate(context), targets, buffer);
    if (!targets.isDistinct) {
        targets = distinct(context, state(), targets, kept);
    }
    return traversal_->hasCondition() ? forEachAdmitted(context, *traversal_, targets, consumer)
                                      : consumer.take(targets);
}

void MMAssociationExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAssociationExpr").operand(traversal_.get()).operand(object_.get()).end();
}
