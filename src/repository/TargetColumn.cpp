#include "repository/TargetColumn.h"

#include <algorithm>
#include <functional>

#include "repository/ColumnShape.h"

namespace {

bool isDistinct(const MMObject* first, const MMObject* last) {
    if (last - first < 2) {
        return true;
    }
    if (std::adjacent_find(first, last, std::greater_equal<>()) == last) {
        return true;  // it ascends, as what is contained does
    }
    std::vector<MMObject> sorted(first, last);
    std::sort(sorted.begin(), sorted.end());
    return std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end();
}

std::size_t countOwners(const std::vector<Link>& links) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < links.size(); ++i) {
        count += i == 0 || links[i].owner != links[i - 1].owner ? 1 : 0;
    }
    return count;
}

bool comesBefore(const Link& a, const Link& b) { return a.owner < b.owner; }

}  // namespace

TargetColumn::TargetColumn(std::vector<Link>& links, const std::vector<TextRef>& texts,
                           std::size_t objectCount) {
    if (!std::is_sorted(links.begin(), links.end(), comesBefore)) {
        std::stable_sort(links.begin(), links.end(), comesBefore);
    }
    const bool isDense = isWorthwhile(objectCount, sizeof(std::uint32_t), links.size());
    const std::size_t ownerCount = isDense ? objectCount : countOwners(links);
    targets_.reserve(links.size());
    offsets_.reserve(ownerCount + 1);
    owners_.reserve(isDense ? 0 : ownerCount);
    for (std::size_t i = 0; i < links.size();) {
        const std::uint32_t owner = links[i].owner;
        beginRange(owner, isDense);
        i = addRange(links, i, texts);
    }
    offsets_.resize(ownerCount + 1, static_cast<std::uint32_t>(targets_.size()));
}

// A place for the next owner that has links, and for those before him that have none.
void TargetColumn::beginRange(std::uint32_t owner, bool isDense) {
    const auto start = static_cast<std::uint32_t>(targets_.size());
    if (isDense) {
        offsets_.resize(std::size_t{owner} + 1, start);
    } else {
        owners_.push_back(owner);
        offsets_.push_back(start);
    }
}

// Adds the links of one owner, beginning with link `i`; returns the number of the next link.
std::size_t TargetColumn::addRange(const std::vector<Link>& links, std::size_t i,
                                   const std::vector<TextRef>& texts) {
    const std::uint32_t owner = links[i].owner;
    const std::size_t start = targets_.size();
    for (; i < links.size() && links[i].owner == owner; ++i) {
        if (links[i].target != mmNoObject) {
            targets_.push_back(links[i].target);
        } else {
            outside_.push_back(
                {owner, static_cast<std::uint32_t>(targets_.size() - start), texts[links[i].text]});
        }
    }
    isDistinct_ =
        isDistinct_ && isDistinct(targets_.data() + start, targets_.data() + targets_.size());
    return i;
}

std::size_t TargetColumn::findPlace(std::uint32_t owner) const {
    const auto found = std::lower_bound(owners_.begin(), owners_.end(), owner);
    return found != owners_.end() && *found == owner
               ? static_cast<std::size_t>(found - owners_.begin())
               : owners_.size();
}

void TargetColumn::show(MMTargetColumn& column) const {
    if (owners_.empty() && !offsets_.empty()) {
        column.count = std::min<std::uint64_t>(column.count, offsets_.size() - 1);
        column.offsets = offsets_.data();
        column.targets = targets_.data();
        column.isDistinct = isDistinct_;
    }
}

TargetColumn::OutsideRange TargetColumn::outsideAt(std::uint32_t owner) const {
    const auto isBefore = [](const Outside& outside, std::uint32_t number) {
        return outside.owner < number;
    };
    const auto isAfter = [](std::uint32_t number, const Outside& outside) {
        return number < outside.owner;
    };
    const Outside* const begin = outside_.data();
    const Outside* const end = begin + outside_.size();
    const Outside* const first = std::lower_bound(begin, end, owner, isBefore);
    return {first, std::upper_bound(first, end, owner, isAfter)};
}
