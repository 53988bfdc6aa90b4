// A run works on two lists: a queue of turns (a step and an object) that are to be followed breadth
// first, and, for steps below one that is marked, a stack of turns that are being followed, each
// with its place in its targets. A turn is followed once, so what was followed and what was reached
// is remembered, except where it cannot come again: below a step that is the only way to its child,
// an object that no other object reaches comes once.
#include "fliodram/MMTraversalRun.h"

#include <unordered_map>

namespace {

using Step = MMTraversalPlan::Step;

/// One evaluation of a path.
class TraversalRun {
public:
    TraversalRun(MMEvaluationContext& context, const MMTraversalPlan& plan,
                 MMTraversalMemory& memory, MMObjectConsumer& consumer)
        : context_(context), plan_(plan), memory_(memory), consumer_(consumer), kept_(context) {}

    bool run(MMObject object) {
        enqueue(plan_.start(), object, true);
        while (memory_.head != memory_.queue.size()) {
            const MMTraversalTurn next = dequeue();
            readAhead();
            const bool isDepthFirst = plan_.step(next.step).traversal->isDepthFirst();
            if (!(isDepthFirst ? followDepthFirst(next) : follow(next))) {
                return false;
            }
        }
        return true;
    }

private:
    MMTraversalTurn turn(std::uint32_t step, MMObject object, bool isNew) const {
        return {step, isNew && plan_.step(step).entries == 1, object};
    }

    void enqueue(std::span<const std::uint32_t> steps, MMObject object, bool isNew) {
        for (const std::uint32_t step : steps) {
            context_.step();
            memory_.queue.push_back(turn(step, object, isNew));
        }
        context_.checkCollectionSize(memory_.queue.size() - memory_.head);
    }

    // What was taken off the queue goes when it is most of it.
    MMTraversalTurn dequeue() {
        constexpr std::size_t few = 1024;
        std::vector<MMTraversalTurn>& queue = memory_.queue;
        const MMTraversalTurn next = queue[memory_.head++];
        if (memory_.head > few && memory_.head * 2 > queue.size()) {
            queue.erase(queue.begin(), queue.begin() + static_cast<std::ptrdiff_t>(memory_.head));
            memory_.head = 0;
        }
        return next;
    }

    // Has the targets of a turn that comes soon brought into the cache.
    void readAhead() const {
        constexpr std::size_t soon = 8;
        if (memory_.queue.size() - memory_.head > soon) {
            const MMTraversalTurn& turn = memory_.queue[memory_.head + soon];
            plan_.step(turn.step).traversal->prefetchTargets(context_, turn.object);
        }
    }

    bool isFirst(const MMTraversalTurn& turn) {
        if (turn.isNew) {
            return true;
        }
        const bool isFirst = memory_.followed.insert(context_, turn);
        context_.checkCollectionSize(memory_.followed.size());
        return isFirst;
    }

    // Hands an object that a step reached to the consumer, if it belongs to the result.
    bool reach(const Step& step, const MMObject& object, bool isNew) {
        if (!step.isResult) {
            return true;
        }
        const bool isFirst =
            (isNew && plan_.hasOneResult()) || memory_.reached.insert(context_, {object});
        context_.checkCollectionSize(memory_.reached.size());
        return !isFirst || takeOne(consumer_, object);
    }

    bool follow(const MMTraversalTurn& turn) {
        if (!isFirst(turn)) {
            return true;
        }
        const Step& step = plan_.step(turn.step);
        std::vector<MMObject> buffer;
        MMObjectRange targets;
        step.traversal->findTargets(context_, turn.object, targets, buffer);
        const bool areNew = targets.isDistinct && targets.isExclusive;
        for (const MMObject* next = targets.first;
             step.traversal->findAdmitted(context_, next, targets.last); ++next) {
            if (!reach(step, *next, areNew)) {
                return false;
            }
            enqueue(plan_.children(step), *next, areNew);
        }
        return true;
    }

    bool followDepthFirst(const MMTraversalTurn& start) {
        memory_.stack.push_back({start, false, {}, {}});
        while (!memory_.stack.empty()) {
            MMTraversalMemory::Frame& frame = memory_.stack.back();
            const bool isFollowed = frame.isOpen || open(frame);
            if (!isFollowed || frame.targets.first == frame.targets.last) {
                close(frame);
            } else if (!descend(frame)) {
                return false;
            }
        }
        return true;
    }

    bool open(MMTraversalMemory::Frame& frame) {
        frame.isOpen = isFirst(frame.turn);
        if (frame.isOpen) {
            const Step& step = plan_.step(frame.turn.step);
            step.traversal->findTargets(context_, frame.turn.object, frame.targets, frame.buffer);
            if (frame.copiedBytes() != 0) {
                kept_.add(frame.copiedBytes());
            }
        }
        return frame.isOpen;
    }

    void close(const MMTraversalMemory::Frame& last) {
        if (last.copiedBytes() != 0) {
            kept_.remove(last.copiedBytes());
        }
        memory_.stack.pop_back();
    }

    // Takes the next target of a turn, and puts the steps below it on the stack, the first on top.
    bool descend(MMTraversalMemory::Frame& frame) {
        const Step& step = plan_.step(frame.turn.step);
        const MMObject object = *frame.targets.first++;
        const bool isNew = frame.targets.isDistinct && frame.targets.isExclusive;
        context_.step();
        if (!step.traversal->admits(context_, object)) {
            return true;
        }
        if (!reach(step, object, isNew)) {
            return false;
        }
        const std::span<const std::uint32_t> below = plan_.children(step);
        for (auto child = below.rbegin(); child != below.rend(); ++child) {
            context_.step();
            memory_.stack.push_back({turn(*child, object, isNew), false, {}, {}});
        }
        context_.checkCollectionSize(memory_.stack.size());
        return true;
    }

    MMEvaluationContext& context_;
    const MMTraversalPlan& plan_;
    MMTraversalMemory& memory_;
    MMObjectConsumer& consumer_;
    MMKeptBytes kept_;  // of the targets that the model copied for the turns on the stack
};

}  // namespace

/// Numbers the steps of a graph and lists the groups of alternatives, both from the beginning
/// onward. Siblings may lead round in a circle, and a group may be entered at several of its steps.
class MMTraversalPlan::Builder {
public:
    explicit Builder(MMTraversalPlan& plan) : plan_(plan) {}

    void build(const MMAssociationTraversal& first) {
        plan_.startCount_ = enter(first).last;
        for (std::size_t i = 0; i < plan_.steps_.size(); ++i) {
            const Step step = plan_.steps_[i];
            plan_.resultCount_ += step.isResult ? 1 : 0;
            if (step.traversal->child() != nullptr) {
                const Group group = enter(*step.traversal->child());
                plan_.steps_[i].firstChild = group.first;
                plan_.steps_[i].lastChild = group.last;
            }
        }
    }

private:
    // The steps from one on among its siblings, by their places in the list of children.
    struct Group {
        std::size_t first;
        std::size_t last;
    };

    // The group that a step leads to, which is entered once more.
    Group enter(const MMAssociationTraversal& first) {
        const auto known = groups_.find(&first);
        const Group group = known != groups_.end() ? known->second : add(first);
        for (std::size_t i = group.first; i < group.last; ++i) {
            ++plan_.steps_[plan_.children_[i]].entries;
        }
        return group;
    }

    Group add(const MMAssociationTraversal& first) {
        Group group{plan_.children_.size(), 0};
        for (const MMAssociationTraversal* const step : first.alternatives()) {
            plan_.children_.push_back(number(*step));
        }
        group.last = plan_.children_.size();
        groups_.emplace(&first, group);
        return group;
    }

    std::uint32_t number(const MMAssociationTraversal& step) {
        const auto next = static_cast<std::uint32_t>(plan_.steps_.size());
        const auto [found, isNew] = numbers_.emplace(&step, next);
        if (isNew) {
            plan_.steps_.push_back({&step, 0, 0, 0, step.isResult()});
        }
        return found->second;
    }

    MMTraversalPlan& plan_;
    std::unordered_map<const MMAssociationTraversal*, std::uint32_t> numbers_;
    std::unordered_map<const MMAssociationTraversal*, Group> groups_;
};

MMTraversalPlan::MMTraversalPlan(const MMAssociationTraversal& first) {
    Builder(*this).build(first);
}

void MMTraversalMemory::clear() {
    queue.clear();
    head = 0;
    stack.clear();
    followed.clear();
    reached.clear();
}

bool MMTraversalMemory::isLarge() const {
    constexpr std::size_t large = 65537;  // a set has room for one key more than half its table
    return queue.capacity() > large || stack.capacity() > large || followed.capacity() > large ||
           reached.capacity() > large;
}

MMTraversalLease::~MMTraversalLease() {
    if (!memory_->isLarge()) {
        memory_->clear();
        state_.spare = std::move(memory_);
    }
}

bool runTraversal(MMEvaluationContext& context, MMTraversalState& state, MMObject object,
                  MMObjectConsumer& consumer) {
    MMTraversalLease lease(state);
    return TraversalRun(context, state.plan, lease.memory(), consumer).run(object);
}
