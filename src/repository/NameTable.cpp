#include "repository/NameTable.h"

std::string capitalized(std::string_view name) {
    std::string result(name);
    if (!result.empty() && result[0] >= 'a' && result[0] <= 'z') {
        result[0] = static_cast<char>(result[0] - 'a' + 'A');
    }
    return result;
}

std::uint32_t NameTable::intern(std::string_view name) {
    if (2 * (names_.size() + 1) > slots_.size()) {
        grow();
    }
    std::uint32_t& slot = slots_[slotOf(name)];
    if (slot == none) {
        slot = static_cast<std::uint32_t>(names_.size());
        names_.push_back(name);
    }
    return slot;
}

std::uint32_t NameTable::find(std::string_view name) const {
    return slots_.empty() ? none : slots_[slotOf(name)];
}

// The slot that holds the name, or the free one where it belongs.
std::size_t NameTable::slotOf(std::string_view name) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = static_cast<std::size_t>(hash_(name)) & mask;
    while (slots_[slot] != none && names_[slots_[slot]] != name) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void NameTable::grow() {
    slots_.assign(slots_.empty() ? 16 : 2 * slots_.size(), none);
    for (std::uint32_t number = 0; number < names_.size(); ++number) {
        slots_[slotOf(names_[number])] = number;
    }
}
