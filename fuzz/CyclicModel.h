// A model of fifty objects, on cycles of every association, for fuzz targets that evaluate.
#pragma once

#include <string>
#include <vector>

#include "fliodram/MMEvaluationContext.h"
#include "fliodram/StructModel.h"

/// The model, made once; its classes and features are those of the corpus that seeds come from.
class CyclicModel {
public:
    static const CyclicModel& instance();

    const MMModel& model() const { return model_; }
    /// The same objects as a JSON document.
    std::string document() const;
    MMObject object(std::size_t number) const { return things_[number % things_.size()].handle(); }

private:
    CyclicModel();

    std::vector<Thing> things_;
    StructModel model_;
};

/// Limits that an input soon reaches.
MMEvaluationLimits fuzzLimits();
