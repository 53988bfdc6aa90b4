#include "repository/InverseIndex.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "repository/ColumnShape.h"

InverseIndex::InverseIndex(const ModelTables& tables)
    : tables_(tables), inverses_(std::make_unique<Inverse[]>(tables.featureNames.size())) {}

InverseIndex::~InverseIndex() = default;

void InverseIndex::prepare(MMKey feature) const {
    Inverse& inverse = inverses_[feature];
    inverse.once.run([&] { build(feature, inverse); });
}

MMObjectRange InverseIndex::at(MMKey feature, MMObject target) const {
    const Inverse& inverse = inverses_[feature];
    std::size_t place = ModelTables::classNumber(target);
    if (!inverse.isDense) {
        place = inverse.findPlace(ModelTables::classNumber(target));
    }
    return inverse.columns[place].at(ModelTables::index(target));
}

// The place of the column of a class, or of the empty one behind them.
std::size_t InverseIndex::Inverse::findPlace(std::uint32_t classNumber) const {
    const auto found = std::lower_bound(classes.begin(), classes.end(), classNumber);
    return found != classes.end() && *found == classNumber
               ? static_cast<std::size_t>(found - classes.begin())
               : classes.size();
}

// Orders all pairs of target and source by target, then by the place of the source.
void InverseIndex::build(MMKey feature, Inverse& inverse) const {
    std::vector<Pair> pairs = gather(feature);
    const auto key = [](const Pair& pair) { return std::tie(pair.target, pair.source); };
    std::sort(pairs.begin(), pairs.end(),
              [&](const Pair& a, const Pair& b) { return key(a) < key(b); });
    const auto isSame = [&](const Pair& a, const Pair& b) { return key(a) == key(b); };
    pairs.erase(std::unique(pairs.begin(), pairs.end(), isSame), pairs.end());

    const bool isDense = isWorthwhile(tables_.classes.size(), sizeof(TargetColumn), pairs.size());
    std::vector<TargetColumn> columns(isDense ? tables_.classes.size() : 1);
    std::vector<std::uint32_t> classes;
    std::vector<Link> links;
    for (std::size_t i = 0; i < pairs.size();) {
        const std::uint32_t target = ModelTables::classNumber(pairs[i].target);
        links.clear();
        for (; i < pairs.size() && ModelTables::classNumber(pairs[i].target) == target; ++i) {
            links.push_back(
                {tables_.handles[pairs[i].source], ModelTables::index(pairs[i].target), 0});
        }
        TargetColumn column(links, {}, tables_.classes[target].objects.size());
        if (isDense) {
            columns[target] = std::move(column);
        } else {
            columns.back() = std::move(column);
            columns.emplace_back();
            classes.push_back(target);
        }
    }
    inverse.isDense = isDense;
    inverse.columns = std::move(columns);
    inverse.classes = std::move(classes);
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
