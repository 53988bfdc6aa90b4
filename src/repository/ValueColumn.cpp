#include "repository/ValueColumn.h"

#include <algorithm>

#include "repository/ColumnShape.h"

static_assert(TextRef::absent == MMTextPlace::elsewhere);

// The code of a text, given to it now if it has none; 0 where there are too many texts already.
std::uint8_t ValueColumn::codeOf(TextRef value, const TextStore& texts) {
    constexpr std::size_t most = 16;
    const std::string_view text = texts.view(value);
    for (std::size_t code = 1; code < codeTexts_.size(); ++code) {
        if (texts.view(codeTexts_[code]) == text) {
            return static_cast<std::uint8_t>(code);
        }
    }
    if (codeTexts_.size() > most) {
        return 0;
    }
    if (codeTexts_.empty()) {
        codeTexts_.emplace_back();
    }
    codeTexts_.push_back(value);
    return static_cast<std::uint8_t>(codeTexts_.size() - 1);
}

// Adds a value behind a gap, or one that needs another shape than the column has.
bool ValueColumn::addOther(std::uint32_t owner, TextRef value, std::uint8_t code) {
    if (placeCount() != 0 && owner == ownerAt(placeCount() - 1)) {
        return false;
    }
    ++count_;
    const std::size_t places = owner + std::size_t{1};
    if (shape_ == Shape::coded && code != 0 && isWorthwhile(places, sizeof code, count_)) {
        codes_.resize(owner);
        codes_.push_back(code);
        return true;
    }
    const bool isSparse = !isWorthwhile(places, sizeof(MMTextPlace), count_);
    if (shape_ == Shape::coded || (shape_ == Shape::placed && isSparse)) {
        makeListed(isSparse);
    }
    if (shape_ == Shape::placed) {
        places_.resize(owner);
    } else {
        owners_.push_back(owner);
    }
    places_.push_back(placeOf(value));
    return true;
}

// Turns codes into places, and with `isSparse` into a list of the values that there are.
void ValueColumn::makeListed(bool isSparse) {
    std::vector<MMTextPlace> places;
    for (std::size_t owner = 0; owner < placeCount(); ++owner) {
        const TextRef text = textAt(owner);
        if (isSparse && !text.isAbsent()) {
            owners_.push_back(static_cast<std::uint32_t>(owner));
        }
        if (!isSparse || !text.isAbsent()) {
            places.push_back(placeOf(text));
        }
    }
    places_ = std::move(places);
    codes_ = {};
    codeTexts_ = {};
    shape_ = isSparse ? Shape::sparse : Shape::placed;
}

void ValueColumn::settle(std::size_t objectCount, const TextStore& texts) {
    if (shape_ == Shape::sparse && !makeCoded(objectCount, texts) &&
        isWorthwhile(objectCount, sizeof(MMTextPlace), count_)) {
        makePlaced(objectCount);
    } else if (shape_ == Shape::coded && isWorthwhile(objectCount, 1, count_)) {
        codes_.resize(objectCount);
    } else if (shape_ == Shape::placed && isWorthwhile(objectCount, sizeof(MMTextPlace), count_)) {
        places_.resize(objectCount);
    }
}

void ValueColumn::makePlaced(std::size_t objectCount) {
    std::vector<MMTextPlace> places(objectCount);
    for (std::size_t i = 0; i < owners_.size(); ++i) {
        places[owners_[i]] = places_[i];
    }
    places_ = std::move(places);
    owners_ = {};
    shape_ = Shape::placed;
}

// Turns a list into codes; does nothing, and returns false, where they are not worthwhile.
bool ValueColumn::makeCoded(std::size_t objectCount, const TextStore& texts) {
    if (!isWorthwhile(objectCount, 1, count_)) {
        return false;
    }
    std::vector<std::uint8_t> codes(objectCount);
    for (std::size_t i = 0; i < owners_.size(); ++i) {
        const std::uint8_t code = codeOf(refOf(places_[i]), texts);
        if (code == 0) {
            codeTexts_ = {};
            return false;
        }
        codes[owners_[i]] = code;
    }
    codes_ = std::move(codes);
    places_ = {};
    owners_ = {};
    shape_ = Shape::coded;
    return true;
}

TextRef ValueColumn::findSparse(std::uint32_t owner) const {
    const auto found = std::lower_bound(owners_.begin(), owners_.end(), owner);
    return found != owners_.end() && *found == owner
               ? refOf(places_[static_cast<std::size_t>(found - owners_.begin())])
               : TextRef();
}

void ValueColumn::pack(const TextStore& texts) {
    if (shape_ != Shape::placed) {
        return;
    }
    const auto isPacked = [](MMTextPlace place) { return place.length < MMTextPlace::elsewhere; };
    std::size_t size = 0;
    for (const MMTextPlace place : places_) {
        size += isPacked(place) ? place.length : 0;
    }
    packed_.clear();
    packed_.reserve(size);
    packedPlaces_ = places_;
    for (MMTextPlace& place : packedPlaces_) {
        const std::string_view text = isPacked(place) ? texts.view(refOf(place)) : "";
        place.offset = static_cast<std::uint32_t>(packed_.size());
        packed_.append(text);
    }
}

void ValueColumn::prepare(const TextStore& texts, std::string_view absentText) {
    base_ = texts.base();
    for (const TextRef text : codeTexts_) {
        views_.push_back(text.isAbsent() ? absentText : texts.view(text));
    }
}

void ValueColumn::show(MMTextColumn& column) const {
    if (shape_ == Shape::sparse || placeCount() == 0) {
        return;
    }
    column.count = std::min<std::uint64_t>(column.count, placeCount());
    if (shape_ == Shape::coded) {
        column.codes = codes_.data();
        column.texts = views_.data();
    } else {
        const bool isPacked = !packedPlaces_.empty();
        column.places = isPacked ? packedPlaces_.data() : places_.data();
        column.base = isPacked ? packed_.data() : base_;
    }
}
