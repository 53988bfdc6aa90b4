#include "repository/IdTable.h"

void IdTable::reserve(std::size_t count) { slots_.assign(count + count / 2 + 1, Slot()); }

std::uint32_t IdTable::insert(TextRef id, std::uint32_t object, const TextStore& texts) {
    const std::string_view text = texts.view(id);
    const std::uint64_t hash = hash_(text);
    Slot& slot = slots_[slotOf(text, hash, texts)];
    const std::uint32_t previous = slot.object;
    slot = {id, static_cast<std::uint32_t>(hash), object};
    return previous;
}

std::uint32_t IdTable::find(std::string_view id, const TextStore& texts) const {
    return slots_.empty() ? none : slots_[slotOf(id, hash_(id), texts)].object;
}

// The slot that holds the id, or the free one where it belongs. The lower half of the hash tells
// most other ids apart without a look at their texts.
std::size_t IdTable::slotOf(std::string_view id, std::uint64_t hash, const TextStore& texts) const {
    std::size_t at = firstSlot(hash);
    const auto lower = static_cast<std::uint32_t>(hash);
    for (;; at = at + 1 == slots_.size() ? 0 : at + 1) {
        const Slot& slot = slots_[at];
        if (slot.object == none || (slot.hash == lower && texts.view(slot.id) == id)) {
            return at;
        }
    }
}
