// Paths of associations: the steps of a path, and the objects that they reach.
#pragma once

#include <memory>
#include <vector>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMExpr.h"
#include "fliodram/MMFeatureReader.h"
#include "fliodram/MMObjectVarExpr.h"
#include "foundation/OrvString.h"

/// One step along a named association, a node of a graph of steps.
///
/// From an object it reaches the objects of the association, in order, for which its condition
/// holds. The child is the step taken from each object reached; the sibling is a further step
/// taken from the same objects as this one. A step may be reached again from its own child or
/// sibling.
class __attribute__((visibility("default"))) MMAssociationTraversal final : public MMTarget {
public:
    /// With `addToResult`, the objects reached belong to the result although a child follows.
    MMAssociationTraversal(const OrvString& associationName, bool addToResult);
    static bool classof(const OrvCyclicPtrBody& body) {
        return (body.getBodyKinds() & MM_KIND_TRAVERSAL) != 0;
    }

    void setChild(const OrvCyclicPtr<MMAssociationTraversal>& child);
    void setSibling(const OrvCyclicPtr<MMAssociationTraversal>& sibling);
    void setCondition(const OrvCountedPtr<MMValueAbsExpr>& condition);
    /// Whether each object reached is followed to its end before the next one.
    void setDepthFirstEvaluation(bool depthFirst);

    const OrvString& getName() const { return name_; }
    const MMAssociationTraversal* child() const { return child_.get(); }
    /// This step and its siblings, each once, although siblings may lead round in a circle.
    std::vector<const MMAssociationTraversal*> alternatives() const;
    bool isDepthFirst() const { return depthFirst_; }
    /// Whether the objects reached belong to the result.
    bool isResult() const { return addToResult_ || !child_; }
    /// Whether the step is a whole path.
    bool isSingle() const { return !child_ && !sibling_; }
    bool hasCondition() const { return static_cast<bool>(condition_); }
    /// Whether it reaches all its targets, and nothing else.
    bool isPlain() const { return isSingle() && !hasCondition(); }

    /// The objects of the association, whatever the condition; none of no object.
    void findTargets(MMEvaluationContext& context, MMObject object, MMObjectRange& targets,
                     std::vector<MMObject>& buffer) const {
        reader_.read(context, name_.view(), object, targets, buffer);
    }
    /// The same, as far as is known without asking the model.
    bool knowsTargets(const MMEvaluationContext& context, MMObject object,
                      MMObjectRange& targets) const {
        return reader_.readColumn(context.getModel(), object, targets);
    }
    /// To be called some objects before findTargets().
    void prefetchTargets(const MMEvaluationContext& context, MMObject object) const {
        reader_.prefetch(context.getModel(), object);
    }
    MMObjectRange targets(MMEvaluationContext& context, MMObject object,
                          std::vector<MMObject>& buffer) const {
        MMObjectRange targets;
        findTargets(context, object, targets, buffer);
        return targets;
    }
    /// Goes on to the first object of a range that the condition admits; false where there is none.
    /// Each object that is looked at takes a step.
    bool findAdmitted(MMEvaluationContext& context, const MMObject*& next,
                      const MMObject* last) const {
        if (condition_) {
            return condition_->findTrue(context, next, last);
        }
        context.step(next != last ? 1 : 0);
        return next != last;
    }
    /// Whether the condition holds for an object; true without a condition.
    bool admits(MMEvaluationContext& context, MMObject object) const {
        return !condition_ || condition_->evaluateBooleanFor(context, object);
    }

    void print(MMTargetPrinter& printer) const override;
    void printCall(MMTargetPrinter& printer) const;

private:
    OrvString name_;
    bool addToResult_;
    bool depthFirst_ = false;
    OrvCyclicMember<MMValueAbsExpr> condition_;
    OrvCyclicMember<MMAssociationTraversal> child_;
    OrvCyclicMember<MMAssociationTraversal> sibling_;
    mutable MMTargetReader reader_;
};

struct MMTraversalState;

/// The objects that a graph of steps reaches from an object.
///
/// The result holds the objects reached by steps without a child and by steps marked so, each once,
/// at its first reach. Breadth first: what a step reached is followed after all that was reached
/// before it; below a step that is marked depth first, at once, whatever is marked there. A step
/// follows an object once in one evaluation, the first time its turn comes, so cycles end.
class __attribute__((visibility("default"))) MMAssociationExpr final
    : public MMObjectCollectionExpr {
public:
    MMAssociationExpr(const OrvCyclicPtr<MMAssociationTraversal>& traversal,
                      const OrvCyclicPtr<MMObjectExpr>& object);
    ~MMAssociationExpr() override;

    /// The first step, and the object from which it goes.
    const MMAssociationTraversal& getTraversal() const { return *traversal_; }
    const MMObjectExpr& getObject() const { return *object_.get(); }

    /// A collection that is one of these; else null.
    static const MMAssociationExpr* from(const MMObjectCollectionExpr* collection) {
        const bool isOne =
            collection != nullptr && (collection->getBodyKinds() & MM_KIND_ASSOCIATION) != 0;
        return isOne ? static_cast<const MMAssociationExpr*>(collection) : nullptr;
    }

    /// Sets `range` to the whole collection, where that is known without asking the model and
    /// without evaluating anything; else returns false.
    bool knowsRange(const MMEvaluationContext& context, MMObjectRange& range) const {
        return object_.variable() != nullptr && traversal_->isPlain() &&
               traversal_->knowsTargets(context, object_.variable()->object(), range) &&
               range.isDistinct;
    }

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    bool findRange(MMEvaluationContext& context, MMObjectRange& range,
                   std::vector<MMObject>& buffer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMTraversalState& state() const;

    OrvCyclicOperand<MMAssociationTraversal> traversal_;
    MMObjectOperand object_;
    mutable std::unique_ptr<MMTraversalState> state_;  // once it is needed; all links are set then
};
