// The model on which the evaluation tests run.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "fliodram/StructModel.h"

/// Thirteen objects in two trees, with cycles, self references, targets listed twice, absent
/// attributes, and attribute values that are numbers, nearly numbers and odd texts. Its table is in
/// the source file. Attributes: name, type, v (number-like), w (odd); associations: a, b, c, and
/// parameter. Made by each test program once and constant.
class SmallModel {
public:
    SmallModel();
    SmallModel(const SmallModel&) = delete;
    SmallModel& operator=(const SmallModel&) = delete;

    const std::vector<Thing>& things() const { return things_; }
    const StructModel& view() const { return view_; }
    /// The object of that identifier, which there must be.
    const Thing& at(std::string_view id) const { return things_[indexOf(id)]; }

private:
    std::size_t indexOf(std::string_view id) const;

    std::vector<Thing> things_;
    StructModel view_;
};
