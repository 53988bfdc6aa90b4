// Finds objects by their ids.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "repository/KeyedHash.h"
#include "repository/TextRef.h"

/// A hash table from ids to the numbers of objects, sized once for all of them.
///
/// Holds references to the ids' texts, which the caller's store resolves. Constant operations may
/// be called from any thread.
class IdTable {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    /// Empties the table and makes room for so many ids.
    void reserve(std::size_t count);

    /// Sets the object of an id; returns the one that it had before, or none.
    std::uint32_t insert(TextRef id, std::uint32_t object, const TextStore& texts);

    /// Where find() will look first. To be fetched into the cache some ids ahead, if the table is
    /// larger than a cache.
    const void* firstLook(std::string_view id) const {
        return slots_.data() + firstSlot(hash_(id));
    }
    bool isLarge() const { return slots_.size() > 65536; }

    /// The object of an id, or none.
    std::uint32_t find(std::string_view id, const TextStore& texts) const;

private:
    struct Slot {
        TextRef id;
        std::uint32_t hash = 0;
        std::uint32_t object = none;
    };

    // The upper half of the hash chooses where to begin.
    std::size_t firstSlot(std::uint64_t hash) const {
        return static_cast<std::size_t>(((hash >> 32U) * slots_.size()) >> 32U);
    }
    std::size_t slotOf(std::string_view id, std::uint64_t hash, const TextStore& texts) const;

    KeyedHash hash_;
    std::vector<Slot> slots_;
};
