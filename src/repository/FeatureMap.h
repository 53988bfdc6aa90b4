// The features of one class by their keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "fliodram/MMModel.h"

/// Finds the number of a feature within its class by the key of its name.
///
/// Keys are small numbers that a class uses in runs, so that the lowest bits of a key are its
/// place and a look-up is a load and a comparison. Steps that grow lead out of a run soon, where a
/// document has made two of them meet. Owned by the class's record.
class FeatureMap {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    FeatureMap() : slots_(4) {}

    std::uint32_t find(MMKey key) const {
        std::size_t at = key & mask_;
        for (std::size_t step = 1; slots_[at].key != key && slots_[at].key != mmUnknownKey;
             ++step) {
            at = (at + step) & mask_;
        }
        return slots_[at].feature;
    }

    /// Adds a key that is not in the map.
    void insert(MMKey key, std::uint32_t feature);

private:
    struct Slot {
        MMKey key = mmUnknownKey;
        std::uint32_t feature = none;
    };

    void place(const Slot& added);

    std::vector<Slot> slots_;  // a power of two, at most half of them used
    std::size_t mask_ = 3;
    std::size_t count_ = 0;
};
