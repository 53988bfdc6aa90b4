// Where a path ends that reaches nothing.
#pragma once

#include <unordered_set>
#include <vector>

#include "why/Explanation.h"
#include "why/PathTrace.h"

namespace mmq {

/// Tells, step by step, what a path without a result reached on the way, up to the steps that reach
/// nothing; where these had objects to reach and a condition, why it does not hold for the first.
/// Made on the stack.
class DeadEnds {
public:
    explicit DeadEnds(Explanation& explanation) : explanation_(explanation) {}

    /// Adds the evidence for a path, whose own line is the last one.
    void explain(const PathNode& node);

private:
    void explainStep(const AssociationNode* step, const std::vector<MMObject>& origins);
    void explainCondition(const DefinitionAssociationNode& step,
                          const std::vector<MMObject>& origins);

    Explanation& explanation_;
    const PathTrace* trace_ = nullptr;
    std::unordered_set<const AssociationNode*> told_;
};

}  // namespace mmq
