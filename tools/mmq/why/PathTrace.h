// How a path reached its objects.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "fliodram/MMAssociationExpr.h"

namespace mmq {

/// A step from one object to another, along an association.
struct PathLink {
    MMObject from;
    std::string association;
    MMObject to;
};

/// A way along links, as much of it as anybody reads: of a long one the first and the last few.
struct PathWay {
    std::vector<PathLink> links;
    std::size_t gap = 0;      ///< the number of links before those that are left out
    std::size_t leftOut = 0;  ///< how many these are
};

/// Every way that the steps of a path go from its first object, followed breadth first, whatever is
/// marked: what is reached is the same, and what is reached first is reached by the fewest steps.
///
/// Follows the path once, when it is made, with the variables as they are bound then; throws what
/// an evaluation of the path throws.
class PathTrace {
public:
    PathTrace(MMEvaluationContext& context, const MMAssociationExpr& path);

    /// The object from which the path goes, or no object.
    MMObject getStart() const { return arrivals_.empty() ? mmNoObject : arrivals_[0].object; }

    /// The way by which the path reached an object of its result; empty for an object that it does
    /// not have.
    PathWay wayTo(MMObject object) const;

    /// The objects that a step of the path reached, each once.
    std::vector<MMObject> reachedBy(const MMAssociationTraversal& step) const;

    /// All links, in the order in which they were followed; the same link twice where two steps
    /// follow it.
    std::vector<PathLink> allLinks() const;

private:
    struct Arrival {
        const MMAssociationTraversal* step;  // null for the first object
        MMObject object;
        std::size_t previous;
    };

    void follow(MMEvaluationContext& context, const MMAssociationTraversal& step, std::size_t from);
    PathLink linkTo(const Arrival& arrival) const;

    std::vector<Arrival> arrivals_;
};

}  // namespace mmq
