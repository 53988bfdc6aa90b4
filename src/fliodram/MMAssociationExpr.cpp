// A path of one step is a loop over its targets. Any other path is a run over two work lists: a
// queue of pairs (step, object) that are to be followed breadth first, and, for steps below one
// that is marked, a stack of pairs that are being followed, each with its place in its targets. A
// pair is followed once.
#include "fliodram/MMAssociationExpr.h"

#include <deque>
#include <unordered_set>
#include <vector>

#include "fliodram/MMObjectSet.h"
#include "fliodram/MMTargetPrinter.h"
#include "foundation/OrvConverter.h"

namespace {

using Step = MMAssociationTraversal;

/// A step taken from an object, as the key of a set.
struct Following {
    const Step* step = nullptr;
    MMObject object = mmNoObject;
    bool operator==(const Following& other) const {
        return step == other.step && object == other.object;
    }
    std::size_t hash() const {
        return mmHash(object + mmHash(reinterpret_cast<std::uintptr_t>(step)));
    }
};

/// One evaluation of a path.
class TraversalRun {
public:
    TraversalRun(MMEvaluationContext& context, MMObjectConsumer& consumer)
        : context_(context), consumer_(consumer) {}

    /// Follows `first` and its siblings from `object`; false when the consumer stopped.
    bool run(const Step* first, MMObject object) {
        enqueue(first, object);
        while (!queue_.empty()) {
            const Following next = queue_.front();
            queue_.pop_front();
            if (!(next.step->isDepthFirst() ? followDepthFirst(next) : follow(next))) {
                return false;
            }
        }
        return true;
    }

private:
    /// A pair that is being followed depth first; its targets are asked for when its turn comes.
    struct Frame {
        Following following;
        bool isOpen = false;
        std::vector<MMObject> buffer;
        MMObjectRange targets;
    };

    void enqueue(const Step* first, MMObject object) {
        for (const Step* step : first->alternatives()) {
            context_.step();
            queue_.push_back({step, object});
        }
        context_.checkCollectionSize(queue_.size());
    }

    bool isNew(const Following& following) {
        const bool isNew = followed_.insert(following);
        context_.checkCollectionSize(followed_.size());
        return isNew;
    }

    // Hands an object that a step reached to the consumer, if it belongs to the result.
    bool reach(const Step& step, const MMObject& object) {
        if (!step.isResult() || !reached_.insert({object})) {
            return true;
        }
        return takeOne(consumer_, object);
    }

    bool follow(const Following& following) {
        if (!isNew(following)) {
            return true;
        }
        const Step& step = *following.step;
        std::vector<MMObject> buffer;
        for (const MMObject object : step.targets(context_, following.object, buffer)) {
            context_.step();
            if (step.admits(context_, object)) {
                if (!reach(step, object)) {
                    return false;
                }
                if (step.child() != nullptr) {
                    enqueue(step.child(), object);
                }
            }
        }
        return true;
    }

    bool followDepthFirst(const Following& start) {
        stack_.push_back({start, false, {}, {}});
        while (!stack_.empty()) {
            Frame& frame = stack_.back();
            const bool isFollowed = frame.isOpen || open(frame);
            if (!isFollowed || frame.targets.first == frame.targets.last) {
                stack_.pop_back();
            } else if (!descend(*frame.following.step, *frame.targets.first++)) {
                stack_.clear();
                return false;
            }
        }
        return true;
    }

    bool open(Frame& frame) {
        frame.isOpen = isNew(frame.following);
        if (frame.isOpen) {
            frame.targets =
                frame.following.step->targets(context_, frame.following.object, frame.buffer);
        }
        return frame.isOpen;
    }

    // Puts the steps below an object that was reached on the stack, the first one on top.
    bool descend(const Step& step, MMObject object) {
        context_.step();
        if (!step.admits(context_, object)) {
            return true;
        }
        if (!reach(step, object)) {
            return false;
        }
        if (step.child() != nullptr) {
            const std::vector<const Step*>& below = step.child()->alternatives();
            for (auto child = below.rbegin(); child != below.rend(); ++child) {
                context_.step();
                stack_.push_back({{*child, object}, false, {}, {}});
            }
        }
        context_.checkCollectionSize(stack_.size());
        return true;
    }

    MMEvaluationContext& context_;
    MMObjectConsumer& consumer_;
    MMKeySet<MMObjectKey> reached_;
    MMKeySet<Following> followed_;
    std::deque<Following> queue_;
    std::vector<Frame> stack_;
};

/// Hands on the targets of a path of one step: those that its condition admits, each once.
bool forEachOfStep(MMEvaluationContext& context, const Step& step, MMObject from,
                   MMObjectConsumer& consumer) {
    std::vector<MMObject> buffer;
    const MMObjectRange targets = step.targets(context, from, buffer);
    if (targets.isDistinct && !step.hasCondition()) {
        return consumer.take(targets);
    }
    MMKeySet<MMObjectKey> reached;
    for (const MMObject& object : targets) {
        context.step();
        if (step.admits(context, object) && (targets.isDistinct || reached.insert({object})) &&
            !takeOne(consumer, object)) {
            return false;
        }
    }
    return true;
}

}  // namespace

MMAssociationTraversal::MMAssociationTraversal(const OrvString& associationName, bool addToResult)
    : name_(associationName),
      addToResult_(addToResult),
      condition_(*this),
      child_(*this),
      sibling_(*this) {
    addBodyKinds(MM_KIND_TRAVERSAL);
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

const std::vector<const MMAssociationTraversal*>& MMAssociationTraversal::alternatives() const {
    if (alternatives_.empty()) {
        std::vector<const MMAssociationTraversal*> found;
        std::unordered_set<const MMAssociationTraversal*> met;
        for (const MMAssociationTraversal* step = this; step != nullptr && met.insert(step).second;
             step = step->sibling_.get()) {
            found.push_back(step);
        }
        alternatives_ = std::move(found);
    }
    return alternatives_;
}

MMObjectRange MMAssociationTraversal::targets(MMEvaluationContext& context, MMObject object,
                                              std::vector<MMObject>& buffer) const {
    const MMModel& model = context.getModel();
    const MMKey key = key_.keyOf(model, name_.view(), [](const MMModel& m, std::string_view name) {
        return m.associationKey(name);
    });
    return key != mmUnknownKey ? model.targets(object, key, buffer) : MMObjectRange();
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
    : traversal_(*this, traversal), object_(*this, object) {}

bool MMAssociationExpr::forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const {
    context.checkDepth();
    const MMObject object = object_->evaluate(context);
    if (object == mmNoObject) {
        return true;
    }
    if (traversal_->isSingle()) {
        return forEachOfStep(context, *traversal_, object, consumer);
    }
    return TraversalRun(context, consumer).run(traversal_.get(), object);
}

void MMAssociationExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMAssociationExpr").operand(traversal_.get()).operand(object_.get()).end();
}
