#include "why/PathTrace.h"

#include <algorithm>
#include <set>
#include <utility>

namespace mmq {

PathTrace::PathTrace(MMEvaluationContext& context, const MMAssociationExpr& path) {
    const MMObject start = path.getObject().evaluate(context);
    if (start == mmNoObject) {
        return;
    }
    arrivals_.push_back({nullptr, start, 0});
    std::set<std::pair<const MMAssociationTraversal*, MMObject>> followed;
    for (std::size_t i = 0; i < arrivals_.size(); ++i) {
        const Arrival arrival = arrivals_[i];
        const MMAssociationTraversal* const next =
            arrival.step == nullptr ? &path.getTraversal() : arrival.step->child();
        if (next == nullptr) {
            continue;
        }
        for (const MMAssociationTraversal* step : next->alternatives()) {
            if (followed.emplace(step, arrival.object).second) {
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

std::vector<PathLink> PathTrace::linksTo(MMObject object) const {
    const auto found =
        std::find_if(arrivals_.begin(), arrivals_.end(), [object](const Arrival& arrival) {
            return arrival.step != nullptr && arrival.object == object && arrival.step->isResult();
        });
    std::vector<PathLink> links;
    if (found != arrivals_.end()) {
        for (const Arrival* arrival = &*found; arrival->step != nullptr;
             arrival = &arrivals_[arrival->previous]) {
            links.push_back(linkTo(*arrival));
        }
        std::reverse(links.begin(), links.end());
    }
    return links;
}

std::vector<MMObject> PathTrace::reachedBy(const MMAssociationTraversal& step) const {
    std::vector<MMObject> objects;
    std::set<MMObject> known;
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
