// The targets that code generation finds again by what they were made of.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

#include "foundation/OrvCyclicPtr.h"
#include "foundation/OrvMemoryPool.h"

/// Targets by the symbols or nodes that they were made of, which it borrows.
///
/// Most expressions have few of either: those stand in the table itself and are searched in turn,
/// the one found last before the others; only what is over goes to a hash table. Member of a
/// visitor, which lives as long as one walk.
template <class Key, class Target>
class TargetTable {
public:
    TargetTable() = default;
    TargetTable(const TargetTable&) = delete;
    TargetTable& operator=(const TargetTable&) = delete;

    /// The target of a key; an empty pointer, to be set, where the key is new. It does not move.
    OrvCyclicPtr<Target>& operator[](const Key& key) {
        if (last_->first != &key) {
            last_ = &find(key);
        }
        return last_->second;
    }

private:
    using Entry = std::pair<const Key*, OrvCyclicPtr<Target>>;
    using More =
        std::unordered_map<const Key*, Entry, std::hash<const Key*>, std::equal_to<const Key*>,
                           OrvPoolAllocator<std::pair<const Key* const, Entry>>>;

    Entry& find(const Key& key) {
        for (Entry& entry : few_) {
            if (entry.first == &key || entry.first == nullptr) {
                entry.first = &key;
                return entry;
            }
        }
        if (more_ == nullptr) {
            more_ = std::make_unique<More>();
        }
        Entry& entry = (*more_)[&key];
        entry.first = &key;
        return entry;
    }

    static constexpr std::size_t fewTargets = 4;

    std::array<Entry, fewTargets> few_;
    std::unique_ptr<More> more_;
    Entry* last_ = few_.data();
};
