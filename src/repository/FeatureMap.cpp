#include "repository/FeatureMap.h"

#include <utility>

void FeatureMap::insert(MMKey key, std::uint32_t feature) {
    if (2 * ++count_ > slots_.size()) {
        const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
        mask_ = slots_.size() - 1;
        for (const Slot& slot : old) {
            if (slot.key != mmUnknownKey) {
                place(slot);
            }
        }
    }
    place({key, feature});
}

void FeatureMap::place(const Slot& added) {
    std::size_t at = added.key & mask_;
    for (std::size_t step = 1; slots_[at].key != mmUnknownKey; ++step) {
        at = (at + step) & mask_;
    }
    slots_[at] = added;
}
