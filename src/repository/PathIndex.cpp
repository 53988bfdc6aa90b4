#include "repository/PathIndex.h"

#include <charconv>
#include <optional>

namespace {

// A text that consists of digits and fits.
std::optional<std::uint32_t> readNumber(std::string_view digits) {
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace

PathIndex::PathIndex(const ModelTables& tables) : tables_(tables) {
    const std::size_t count = tables.records.size();
    byName_.assign(count + count / 2 + 1, NameTable::none);
    byPlace_.assign(count + count / 2 + 1, NameTable::none);
    for (ObjectNumber number = 0; number < count; ++number) {
        const ObjectRecord& record = tables.records[number];
        if (record.container == NameTable::none) {
            continue;
        }
        const std::string_view name = tables.nameOf(tables.handles[number]);
        ObjectNumber& first = byName_[slotOfName(record.container, name)];
        first = first == NameTable::none ? number : first;
        byPlace_[slotOfPlace(record.container, record.feature, record.position)] = number;
    }
}

MMObject PathIndex::find(std::string_view path) const {
    std::size_t slash = path.find('/', 1);
    ObjectNumber object = findRoot(path.substr(1, slash - 1));
    while (object != NameTable::none && slash != std::string_view::npos) {
        const std::size_t next = path.find('/', slash + 1);
        object = findStep(object, path.substr(slash + 1, next - slash - 1));
        slash = next;
    }
    return object == NameTable::none ? mmNoObject : tables_.handles[object];
}

ObjectNumber PathIndex::findRoot(std::string_view number) const {
    const std::optional<std::uint32_t> root = number.empty() ? 0 : readNumber(number);
    return root && *root < tables_.roots.size() ? tables_.number(tables_.roots[*root])
                                                : NameTable::none;
}

ObjectNumber PathIndex::findStep(ObjectNumber container, std::string_view step) const {
    if (step.empty() || step[0] != '@') {
        return step.empty() ? NameTable::none : byName_[slotOfName(container, step)];
    }
    step.remove_prefix(1);
    const std::size_t dot = step.rfind('.');
    const auto position =
        dot == std::string_view::npos ? std::nullopt : readNumber(step.substr(dot + 1));
    const MMKey feature = tables_.featureNames.find(position ? step.substr(0, dot) : step);
    return byPlace_[slotOfPlace(container, feature, position.value_or(0))];
}

// The slot of the wanted object, or the free one where it belongs.
template <class IsWanted>
std::size_t PathIndex::slotOf(const std::vector<ObjectNumber>& slots, std::uint64_t hash,
                              const IsWanted& isWanted) {
    auto at = static_cast<std::size_t>(((hash >> 32U) * slots.size()) >> 32U);
    while (slots[at] != NameTable::none && !isWanted(slots[at])) {
        at = at + 1 == slots.size() ? 0 : at + 1;
    }
    return at;
}

std::size_t PathIndex::slotOfName(ObjectNumber container, std::string_view name) const {
    return slotOf(byName_, hash_(hash_(name), container), [&](ObjectNumber other) {
        return tables_.records[other].container == container &&
               tables_.nameOf(tables_.handles[other]) == name;
    });
}

std::size_t PathIndex::slotOfPlace(ObjectNumber container, MMKey feature,
                                   std::uint32_t position) const {
    const std::uint64_t owner = std::uint64_t{container} << 32U | feature;
    return slotOf(byPlace_, hash_(owner, position), [&](ObjectNumber other) {
        const ObjectRecord& record = tables_.records[other];
        return record.container == container && record.feature == feature &&
               record.position == position;
    });
}
