// Sets and lists of objects that evaluation works with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fliodram/MMExpr.h"

/// A set of keys that answers whether a key is new; small sets are searched in place, larger ones
/// hashed. A key is compared with == and offers `std::size_t hash() const`. Made on the stack.
template <class Key>
class MMKeySet {
public:
    /// Adds the key; false when it was there already.
    bool insert(const Key& key) {
        if (slots_.empty()) {
            for (std::size_t i = 0; i < size_; ++i) {
                if (few_[i] == key) {
                    return false;
                }
            }
            if (size_ < few_.size()) {
                few_[size_++] = key;
                return true;
            }
            grow();
        } else if (size_ * 2 >= slots_.size()) {
            grow();
        }
        Slot& slot = find(key);
        const bool isNew = !slot.isUsed;
        slot = {key, true};
        size_ += isNew ? 1 : 0;
        return isNew;
    }

    std::size_t size() const { return size_; }

private:
    struct Slot {
        Key key{};
        bool isUsed = false;
    };

    Slot& find(const Key& key) {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = key.hash() & mask;
        while (slots_[i].isUsed && !(slots_[i].key == key)) {
            i = (i + 1) & mask;
        }
        return slots_[i];
    }

    void grow() {
        std::vector<Slot> old(slots_.empty() ? few_.size() * 4 : slots_.size() * 2);
        old.swap(slots_);
        if (old.empty()) {
            for (const Key& key : few_) {
                find(key) = {key, true};
            }
        }
        for (const Slot& slot : old) {
            if (slot.isUsed) {
                find(slot.key) = slot;
            }
        }
    }

    std::array<Key, 8> few_{};
    std::size_t size_ = 0;
    std::vector<Slot> slots_;
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
class MMObjectCollector : public MMObjectConsumer {
public:
    explicit MMObjectCollector(MMEvaluationContext& context) : context_(context) {}

    bool take(MMObjectRange objects) override {
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
        collection.forEach(context, collector);
        return collector.release();
    }

private:
    MMEvaluationContext& context_;
    std::vector<MMObject> objects_;
};

/// The range of a whole list of objects.
inline MMObjectRange rangeOf(const std::vector<MMObject>& objects) {
    return {objects.data(), objects.data() + objects.size(), false};
}

/// Hands one object on.
inline bool takeOne(MMObjectConsumer& consumer, const MMObject& object) {
    return consumer.take({&object, &object + 1, true});
}
