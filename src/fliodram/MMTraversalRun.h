// How paths of several steps are followed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "fliodram/MMAssociationExpr.h"
#include "fliodram/MMObjectSet.h"

/// The steps of a path, numbered, with what can be said of them before any object is known.
///
/// Made once of a graph of steps, when all links are set; lives as long as the steps.
class MMTraversalPlan {
public:
    struct Step {
        const MMAssociationTraversal* traversal;
        std::size_t firstChild = 0;  // in the list of children
        std::size_t lastChild = 0;
        std::size_t entries = 0;  // the steps below which it stands, the beginning counted as one
        bool isResult = false;
    };

    explicit MMTraversalPlan(const MMAssociationTraversal& first);

    const Step& step(std::uint32_t number) const { return steps_[number]; }
    /// The steps with which the path begins, and those below a step.
    std::span<const std::uint32_t> start() const { return {children_.data(), startCount_}; }
    std::span<const std::uint32_t> children(const Step& step) const {
        return {children_.data() + step.firstChild, children_.data() + step.lastChild};
    }
    /// Whether the objects of the result are reached by one and the same step.
    bool hasOneResult() const { return resultCount_ == 1; }

private:
    class Builder;

    std::vector<Step> steps_;
    std::vector<std::uint32_t> children_;  // group by group, that of the beginning first
    std::size_t startCount_ = 0;
    std::size_t resultCount_ = 0;
};

/// A step to be taken from an object.
struct MMTraversalTurn {
    std::uint32_t step = 0;
    bool isNew = false;  // it cannot have been taken from that object before
    MMObject object = mmNoObject;

    bool operator==(const MMTraversalTurn& other) const {
        return step == other.step && object == other.object;
    }
    std::size_t hash() const { return mmHash(object + (std::uint64_t{step} << 40U)); }
};

/// What a run needs to remember; kept from run to run for its memory.
struct MMTraversalMemory {
    /// A turn that is being followed depth first; its targets are asked for when it comes.
    struct Frame {
        MMTraversalTurn turn;
        bool isOpen = false;
        std::vector<MMObject> buffer;
        MMObjectRange targets;

        /// What the buffer takes; nothing where the model shows its own memory.
        std::size_t copiedBytes() const { return buffer.capacity() * sizeof(MMObject); }
    };

    std::vector<MMTraversalTurn> queue;
    std::size_t head = 0;  // of the queue
    std::vector<Frame> stack;
    MMKeySet<MMTraversalTurn> followed;
    MMKeySet<MMObjectKey> reached;

    void clear();
    /// Whether it has grown so much that it is better given back.
    bool isLarge() const;
};

/// The plan of a path, and the memory that no run is using at the moment: a condition of the path
/// may lead to another run of it.
struct MMTraversalState {
    explicit MMTraversalState(const MMAssociationTraversal& first) : plan(first) {}

    MMTraversalPlan plan;
    std::unique_ptr<MMTraversalMemory> spare;
};

/// Lends the memory of a state for as long as this object lives.
class MMTraversalLease {
public:
    explicit MMTraversalLease(MMTraversalState& state)
        : state_(state),
          memory_(state.spare != nullptr ? std::move(state.spare)
                                         : std::make_unique<MMTraversalMemory>()) {}
    MMTraversalLease(const MMTraversalLease&) = delete;
    MMTraversalLease& operator=(const MMTraversalLease&) = delete;
    ~MMTraversalLease();

    MMTraversalMemory& memory() { return *memory_; }

private:
    MMTraversalState& state_;
    std::unique_ptr<MMTraversalMemory> memory_;
};

/// Follows a path from an object and hands what belongs to the result to the consumer; false when
/// that stopped.
bool runTraversal(MMEvaluationContext& context, MMTraversalState& state, MMObject object,
                  MMObjectConsumer& consumer);
