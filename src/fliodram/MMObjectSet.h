// Sets and lists of objects that evaluation works with.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

#include "fliodram/MMExpr.h"

/// A set of keys that answers whether a key is new; a small set is searched from end to end, a
/// larger one through a table of hashes. A key is compared with == and offers
/// `std::size_t hash() const`. Keeps its memory when it is cleared, for the next use. A large one
/// looks at the clock of the context while it grows, and is whole when that throws.
template <class Key>
class MMKeySet {
public:
    /// Adds the key; false when it was there already.
    bool insert(MMEvaluationContext& context, const Key& key) {
        if (slotCount_ == 0) {
            for (const Key& other : keys_) {
                if (other == key) {
                    return false;
                }
            }
            keys_.push_back(key);
        } else {
            std::uint32_t& slot = find(key, slotCount_ - 1);
            if (slot != 0) {
                return false;
            }
            keys_.push_back(key);
            slot = static_cast<std::uint32_t>(keys_.size());
        }
        if (keys_.size() > (slotCount_ == 0 ? few : slotCount_ / 2)) {
            grow(context);
        }
        return true;
    }

    std::size_t size() const { return keys_.size(); }
    /// For how many keys there is memory.
    std::size_t capacity() const { return keys_.capacity(); }

    void clear() {
        keys_.clear();
        slotCount_ = 0;
    }

private:
    static constexpr std::size_t few = 8;
    static constexpr std::size_t piece = 8192;  // a power of two

    // The slot of the key, or the free one where it belongs.
    std::uint32_t& find(const Key& key, std::size_t mask) {
        std::size_t i = key.hash() & mask;
        while (slots_[i] != 0 && !(keys_[slots_[i] - 1] == key)) {
            i = (i + 1) & mask;
        }
        return slots_[i];
    }

    // There is no table meanwhile, nor when it throws.
    [[gnu::noinline]] void grow(const MMEvaluationContext& context) {
        const std::size_t count = std::bit_ceil(keys_.size() * 2);
        if (count > std::numeric_limits<std::uint32_t>::max()) {
            throw std::bad_alloc();
        }
        slotCount_ = 0;
        if (count <= piece) {
            slots_.assign(count, 0);
            number(0, keys_.size(), count - 1);
        } else {
            growInPieces(context, count);
        }
        slotCount_ = count;
    }

    // Looks at the clock between two pieces. The keys get the room that they need until the table
    // grows again, so that they are copied here alone.
    void growInPieces(const MMEvaluationContext& context, std::size_t count) {
        std::vector<Key> keys;
        keys.reserve(count / 2 + 1);
        slots_.clear();
        slots_.reserve(count);
        while (slots_.size() < count) {
            context.checkTime({});
            slots_.resize(slots_.size() + piece);
        }
        for (std::size_t first = 0; first < keys_.size(); first += piece) {
            context.checkTime({});
            const std::size_t last = std::min(first + piece, keys_.size());
            keys.insert(keys.end(), keys_.data() + first, keys_.data() + last);
            number(first, last, count - 1);
        }
        keys_.swap(keys);
    }

    // Enters keys into the table.
    void number(std::size_t first, std::size_t last, std::size_t mask) {
        for (std::size_t i = first; i < last; ++i) {
            find(keys_[i], mask) = static_cast<std::uint32_t>(i + 1);
        }
    }

    std::vector<Key> keys_;             // in the order in which they came
    std::vector<std::uint32_t> slots_;  // numbers of keys, from 1
    std::size_t slotCount_ = 0;         // a power of two; 0 while there is no table
};

/// Spreads the bits of a handle, which may be an address or an index.
inline std::size_t mmHash(std::uint64_t bits) {
    bits ^= bits >> 32U;
    bits *= 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>(bits ^ (bits >> 29U));
}

/// An object as the key of a set.
struct MMObjectKey {
    MMObject object = mmNoObject;
    bool operator==(const MMObjectKey& other) const { return object == other.object; }
    std::size_t hash() const { return mmHash(object); }
};

/// Keeps every object that it takes, within the limits of the context.
class MMObjectCollector final : public MMObjectConsumer {
public:
    explicit MMObjectCollector(MMEvaluationContext& context) : context_(context) {}

    bool take(const MMObjectRange& objects) override {
        context_.step(objects.size());
        context_.checkCollectionSize(objects_.size() + objects.size());
        objects_.insert(objects_.end(), objects.begin(), objects.end());
        return true;
    }

    std::vector<MMObject> release() { return std::move(objects_); }

    /// The whole of a collection.
    static std::vector<MMObject> collect(MMEvaluationContext& context,
                                         const MMObjectCollectionExpr& collection) {
        MMObjectCollector collector(context);
        forEachObject(context, collection, collector);
        return collector.release();
    }

private:
    MMEvaluationContext& context_;
    std::vector<MMObject> objects_;
};

/// The range of a whole list of objects.
inline MMObjectRange rangeOf(const std::vector<MMObject>& objects) {
    return {objects.data(), objects.data() + objects.size()};
}

/// Hands one object on.
inline bool takeOne(MMObjectConsumer& consumer, const MMObject& object) {
    return consumer.take({&object, &object + 1, true});
}
