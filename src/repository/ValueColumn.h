// The values of one attribute for all objects of one class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fliodram/MMColumn.h"
#include "repository/TextRef.h"

/// A value with the number of its object among the objects of the class.
struct OwnedText {
    std::uint32_t owner;
    TextRef text;
};

/// One text for each object of a class, or none.
///
/// As long as there are few different texts, as of enumerations and booleans, a code for every
/// object; else a place for every object where many have a value, or a list of the values with
/// their owners: never more than a small multiple of the values that there are. Filled in the
/// order of the objects, then settled. Owned by the class's record; constant operations may be
/// called from any thread.
class ValueColumn {
public:
    /// The value of an object; absent where it has none.
    TextRef at(std::uint32_t owner) const {
        if (shape_ == Shape::sparse) {
            return findSparse(owner);
        }
        return owner < placeCount() ? textAt(owner) : TextRef();
    }

    std::size_t count() const { return count_; }

    /// Adds the value of an object that comes after all that have one already; returns false, and
    /// does nothing, where it is the last of these. `texts` is what the value stands in.
    bool add(std::uint32_t owner, TextRef value, const TextStore& texts) {
        if (shape_ == Shape::placed && owner == places_.size()) {
            places_.push_back(placeOf(value));
            ++count_;
            return true;
        }
        const std::uint8_t code = shape_ == Shape::coded ? codeOf(value, texts) : 0;
        if (code != 0 && owner == codes_.size()) {
            codes_.push_back(code);
            ++count_;
            return true;
        }
        return addOther(owner, value, code);
    }

    /// Chooses the shape for good when all values are there, for a class of so many objects.
    void settle(std::size_t objectCount, const TextStore& texts);

    /// The values in the order of their owners, place by place; absent ones are to be skipped.
    std::size_t placeCount() const {
        return shape_ == Shape::coded ? codes_.size() : places_.size();
    }
    TextRef textAt(std::size_t place) const {
        return shape_ == Shape::coded ? codeTexts_[codes_[place]] : refOf(places_[place]);
    }
    std::uint32_t ownerAt(std::size_t place) const {
        return shape_ == Shape::sparse ? owners_[place] : static_cast<std::uint32_t>(place);
    }

    /// Has the texts stand one behind the other, for a column that is read in no order: where they
    /// were read, each may lie on a page of its own.
    void pack(const TextStore& texts);
    /// The text of an object; without characters where it has none.
    std::string_view view(std::uint32_t owner, const TextStore& texts) const {
        if (owner < packedPlaces_.size() && packedPlaces_[owner].length < TextRef::absent) {
            return {packed_.data() + packedPlaces_[owner].offset, packedPlaces_[owner].length};
        }
        return texts.view(at(owner));
    }

    /// Makes ready for show(), with what an object without a value reads as, or a view without data
    /// where that is not the same for all of them. `texts` must live as long as the column.
    void prepare(const TextStore& texts, std::string_view absentText);
    /// Fills in what a column of the model shows to expressions.
    void show(MMTextColumn& column) const;

private:
    enum class Shape : std::uint8_t { coded, placed, sparse };

    static MMTextPlace placeOf(TextRef text) { return {text.offset, text.length}; }
    static TextRef refOf(MMTextPlace place) { return {place.offset, place.length}; }

    std::uint8_t codeOf(TextRef value, const TextStore& texts);
    bool addOther(std::uint32_t owner, TextRef value, std::uint8_t code);
    void makeListed(bool isSparse);
    void makePlaced(std::size_t objectCount);
    bool makeCoded(std::size_t objectCount, const TextStore& texts);
    TextRef findSparse(std::uint32_t owner) const;

    std::vector<std::uint8_t> codes_;
    std::vector<TextRef> codeTexts_;  // by code; the first is absent
    std::vector<std::string_view> views_;
    std::vector<MMTextPlace> places_;
    std::vector<std::uint32_t> owners_;  // of the places, where the column is sparse
    std::string packed_;
    std::vector<MMTextPlace> packedPlaces_;  // the places in that, in a column that is packed
    const char* base_ = nullptr;             // of the places, for show()
    std::size_t count_ = 0;
    Shape shape_ = Shape::coded;
};
