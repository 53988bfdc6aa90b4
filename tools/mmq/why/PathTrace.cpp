#include "why/PathTrace.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "fliodram/MMObjectSet.h"

namespace mmq {

namespace {

constexpr std::size_t linksAtEachEnd = 5;  // of a way that is too long to be read

using Steps = std::vector<const MMAssociationTraversal*>;

/// A step and an object that it was taken from.
struct TracedTurn {
    const MMAssociationTraversal* step;
    MMObject object;

    bool operator==(const TracedTurn& other) const = default;
    std::size_t hash() const {
        return mmHash(object ^ mmHash(reinterpret_cast<std::uintptr_t>(step)));
    }
};

}  // namespace

PathTrace::PathTrace(MMEvaluationContext& context, const MMAssociationExpr& path) {
    const MMObject start = path.getObject().evaluate(context);
    if (start == mmNoObject) {
        return;
    }
    arrivals_.push_back({nullptr, start, 0});
    std::unordered_map<const MMAssociationTraversal*, Steps> groups;  // by their first steps
    MMKeySet<TracedTurn> followed;
    for (std::size_t i = 0; i < arrivals_.size(); ++i) {
        const Arrival arrival = arrivals_[i];
        const MMAssociationTraversal* const next =
            arrival.step == nullptr ? &path.getTraversal() : arrival.step->child();
        if (next == nullptr) {
            continue;
        }
        const auto [group, isNew] = groups.try_emplace(next);
        if (isNew) {
            group->second = next->alternatives();
        }
        for (const MMAssociationTraversal* step : group->second) {
            if (followed.insert(context, {step, arrival.object})) {
                follow(context, *step, i);
            }
        }
    }
}

void PathTrace::follow(MMEvaluationContext& context, const MMAssociationTraversal& step,
                       std::size_t from) {
    std::vector<MMObject> buffer;
    for (const MMObject object : step.targets(context, arrivals_[from].object, buffer)) {
        context.step();
        if (step.admits(context, object)) {
            arrivals_.push_back({&step, object, from});
            context.checkCollectionSize(arrivals_.size());
        }
    }
}

PathLink PathTrace::linkTo(const Arrival& arrival) const {
    return {arrivals_[arrival.previous].object, std::string(arrival.step->getName().view()),
            arrival.object};
}

PathWay PathTrace::wayTo(MMObject object) const {
    const auto found =
        std::find_if(arrivals_.begin(), arrivals_.end(), [object](const Arrival& arrival) {
            return arrival.step != nullptr && arrival.object == object && arrival.step->isResult();
        });
    std::vector<const Arrival*> steps;
    if (found != arrivals_.end()) {
        for (const Arrival* arrival = &*found; arrival->step != nullptr;
             arrival = &arrivals_[arrival->previous]) {
            steps.push_back(arrival);
        }
    }
    std::reverse(steps.begin(), steps.end());
    PathWay way;
    if (steps.size() > 2 * linksAtEachEnd + 1) {
        way.gap = linksAtEachEnd;
        way.leftOut = steps.size() - 2 * linksAtEachEnd;
    }
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (i < way.gap || i >= way.gap + way.leftOut) {
            way.links.push_back(linkTo(*steps[i]));
        }
    }
    return way;
}

std::vector<MMObject> PathTrace::reachedBy(const MMAssociationTraversal& step) const {
    std::vector<MMObject> objects;
    std::unordered_set<MMObject> known;
    for (const Arrival& arrival : arrivals_) {
        if (arrival.step == &step && known.insert(arrival.object).second) {
            objects.push_back(arrival.object);
        }
    }
    return objects;
}

std::vector<PathLink> PathTrace::allLinks() const {
    std::vector<PathLink> links;
    for (const Arrival& arrival : arrivals_) {
        if (arrival.step != nullptr) {
            links.push_back(linkTo(arrival));
        }
    }
    return links;
}

}  // namespace mmq
