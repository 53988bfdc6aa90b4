#include "repository/ValueColumn.h"

#include "repository/ColumnShape.h"

bool ValueColumn::addAfterGap(std::uint32_t owner, TextRef value) {
    if (!values_.empty() && owner == ownerAt(values_.size() - 1)) {
        return false;
    }
    ++count_;
    if (isDense_ && isWorthwhile(owner + std::size_t{1}, count_)) {
        values_.resize(owner);
    } else {
        if (isDense_) {
            makeSparse();
        }
        owners_.push_back(owner);
    }
    values_.push_back(value);
    return true;
}

void ValueColumn::settle(std::size_t objectCount) {
    if (!isDense_ && isWorthwhile(objectCount, count_)) {
        makeDense();
    }
}

void ValueColumn::makeSparse() {
    std::size_t kept = 0;
    for (std::size_t owner = 0; owner < values_.size(); ++owner) {
        if (!values_[owner].isAbsent()) {
            owners_.push_back(static_cast<std::uint32_t>(owner));
            values_[kept++] = values_[owner];
        }
    }
    values_.resize(kept);
    isDense_ = false;
}

void ValueColumn::makeDense() {
    std::vector<TextRef> dense(owners_.empty() ? 0 : owners_.back() + std::size_t{1});
    for (std::size_t i = 0; i < owners_.size(); ++i) {
        dense[owners_[i]] = values_[i];
    }
    values_ = std::move(dense);
    owners_ = {};
    isDense_ = true;
}

TextRef ValueColumn::findSparse(std::uint32_t owner) const {
    const auto found = std::lower_bound(owners_.begin(), owners_.end(), owner);
    return found != owners_.end() && *found == owner
               ? values_[static_cast<std::size_t>(found - owners_.begin())]
               : TextRef();
}
