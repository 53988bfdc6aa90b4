#include "repository/InverseIndex.h"

#include <algorithm>
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
    return inverses_[feature]
        .columns.of(ModelTables::classNumber(target))
        .at(ModelTables::index(target));
}

InverseIndex::Columns::Columns(std::size_t classCount, std::size_t linkCount)
    : isDense_(isWorthwhile(classCount, sizeof(TargetColumn), linkCount)),
      columns_(isDense_ ? classCount : 1) {}

// Classes are added in order.
void InverseIndex::Columns::add(std::uint32_t classNumber, TargetColumn column) {
    if (isDense_) {
        columns_[classNumber] = std::move(column);
    } else {
        columns_.back() = std::move(column);
        columns_.emplace_back();
        classes_.push_back(classNumber);
    }
}

// The place of the column of a class, or of the empty one behind them.
std::size_t InverseIndex::Columns::findPlace(std::uint32_t classNumber) const {
    const auto found = std::lower_bound(classes_.begin(), classes_.end(), classNumber);
    return found != classes_.end() && *found == classNumber
               ? static_cast<std::size_t>(found - classes_.begin())
               : classes_.size();
}

void InverseIndex::build(MMKey feature, Inverse& inverse) const {
    const std::vector<Pair> pairs = gather(feature);
    Columns columns(tables_.classes.size(), pairs.size());
    for (auto first = pairs.begin(); first != pairs.end();) {
        const std::uint32_t target = ModelTables::classNumber(first->target);
        const auto last = std::find_if(first, pairs.end(), [target](const Pair& pair) {
            return ModelTables::classNumber(pair.target) != target;
        });
        columns.add(target, columnOf(target, {first, last}));
        first = last;
    }
    inverse.columns = std::move(columns);
}

// All pairs of target and source, each once, by target and then by the place of the source.
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
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
}

// The sources of the targets of one class.
TargetColumn InverseIndex::columnOf(std::uint32_t classNumber, std::span<const Pair> pairs) const {
    std::vector<Link> links;
    links.reserve(pairs.size());
    for (const Pair& pair : pairs) {
        links.push_back({tables_.handles[pair.source], ModelTables::index(pair.target), 0});
    }
    return TargetColumn(links, {}, tables_.classes[classNumber].objects.size());
}
