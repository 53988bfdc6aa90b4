// Bringing into the processor's cache what a loop over objects is going to read.
#pragma once

#include <cstddef>

#include "fliodram/MMColumn.h"

/// Reads ahead of a loop that applies a function to the objects of a range, one after the other.
///
/// The texts of a large model lie far from each other. Made on the stack by the loop; the range
/// must stay what it is.
class MMReadAhead {
public:
    explicit MMReadAhead(const MMObjectRange& objects) : objects_(objects) {}

    /// To be called with each object of the range when the function was applied to it. After the
    /// first, the function tells which column it reads.
    template <class Function>
    void after(const MMObject& object, const Function& function, const MMModel& model) {
        if (&object == objects_.first && objects_.size() > worthwhile) {
            column_ = function.findColumn(model);
        }
        if (column_ != nullptr && objects_.last - &object > distance) {
            column_->prefetch((&object)[distance]);
        }
    }

private:
    static constexpr std::ptrdiff_t distance = 16;
    static constexpr std::size_t worthwhile = 64;

    const MMObjectRange& objects_;
    const MMTextColumn* column_ = nullptr;
};
