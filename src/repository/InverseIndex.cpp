#include "repository/InverseIndex.h"

#include <algorithm>
#include <tuple>

InverseIndex::InverseIndex(const ModelTables& tables)
    : tables_(tables), inverses_(std::make_unique<Inverse[]>(tables.featureNames.size())) {}

InverseIndex::~InverseIndex() = default;

void InverseIndex::prepare(MMKey feature) const {
    Inverse& inverse = inverses_[feature];
    inverse.once.run([&] { build(feature, inverse); });
}

MMObjectRange InverseIndex::at(MMKey feature, MMObject target) const {
    return inverses_[feature].byClass[ModelTables::classNumber(target)].at(
        ModelTables::index(target));
}

// Orders all pairs of target and source by target, then by the place of the source.
void InverseIndex::build(MMKey feature, Inverse& inverse) const {
    std::vector<Pair> pairs = gather(feature);
    const auto key = [](const Pair& pair) { return std::tie(pair.target, pair.source); };
    std::sort(pairs.begin(), pairs.end(),
              [&](const Pair& a, const Pair& b) { return key(a) < key(b); });
    const auto isSame = [&](const Pair& a, const Pair& b) { return key(a) == key(b); };
    pairs.erase(std::unique(pairs.begin(), pairs.end(), isSame), pairs.end());

    std::vector<TargetColumn> byClass(tables_.classes.size());
    std::vector<Link> links;
    for (std::size_t i = 0; i < pairs.size();) {
        const std::uint32_t target = ModelTables::classNumber(pairs[i].target);
        links.clear();
        for (; i < pairs.size() && ModelTables::classNumber(pairs[i].target) == target; ++i) {
            links.push_back(
                {tables_.handles[pairs[i].source], ModelTables::index(pairs[i].target), 0});
        }
        byClass[target] = TargetColumn(links, {}, tables_.classes[target].objects.size());
    }
    inverse.byClass = std::move(byClass);
}

std::vector<InverseIndex::Pair> InverseIndex::gather(MMKey feature) const {
    std::vector<Pair> pairs;
    for (const ClassRecord& sources : tables_.classes) {
        const FeatureRecord* const record = sources.find(feature);
        if (record == nullptr || record->targets.empty()) {
            continue;
        }
        for (std::uint32_t owner = 0; owner < sources.objects.size(); ++owner) {
            for (const MMObject target : record->targets.at(owner)) {
                pairs.push_back({target, sources.objects[owner]});
            }
        }
    }
    return pairs;
}
