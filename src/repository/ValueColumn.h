// The values of one attribute for all objects of one class.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "repository/TextRef.h"

/// A value with the number of its object among the objects of the class.
struct OwnedText {
    std::uint32_t owner;
    TextRef text;
};

/// One text for each object of a class, or none.
///
/// A list with a place for every object where many have a value, else a list of the values with
/// their owners: never more than a small multiple of the values that there are. Filled in the
/// order of the objects, then settled. Owned by the class's record; constant operations may be
/// called from any thread.
class ValueColumn {
public:
    /// The value of an object; absent where it has none.
    TextRef at(std::uint32_t owner) const {
        if (isDense_) {
            return owner < values_.size() ? values_[owner] : TextRef();
        }
        return findSparse(owner);
    }

    std::size_t count() const { return count_; }

    /// Adds the value of an object that comes after all that have one already; returns false, and
    /// does nothing, where it is the last of these.
    bool add(std::uint32_t owner, TextRef value) {
        if (isDense_ && owner == values_.size()) {
            values_.push_back(value);
            ++count_;
            return true;
        }
        return addAfterGap(owner, value);
    }

    /// Chooses the shape for good when all values are there, for a class of so many objects.
    void settle(std::size_t objectCount);

    /// The values in the order of their owners, place by place; absent ones are to be skipped.
    std::size_t placeCount() const { return values_.size(); }
    TextRef textAt(std::size_t place) const { return values_[place]; }
    std::uint32_t ownerAt(std::size_t place) const {
        return isDense_ ? static_cast<std::uint32_t>(place) : owners_[place];
    }

private:
    bool addAfterGap(std::uint32_t owner, TextRef value);
    void makeSparse();
    void makeDense();
    TextRef findSparse(std::uint32_t owner) const;

    std::vector<TextRef> values_;
    std::vector<std::uint32_t> owners_;  // of the values, when the column is not dense
    std::size_t count_ = 0;
    bool isDense_ = true;
};
