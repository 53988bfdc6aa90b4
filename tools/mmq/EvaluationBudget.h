// What the evaluations of one run may cost.
#pragma once

#include <chrono>
#include <optional>

#include "Options.h"
#include "fliodram/MMEvaluationContext.h"

namespace mmq {

/// The limits that the options set. The time is for all evaluations and runs from the making of
/// this; any number of threads may ask at once.
class EvaluationBudget {
public:
    explicit EvaluationBudget(const Options& options);

    /// The limits of the next evaluation: of the time, what is left. Throws MMEvaluationError when
    /// nothing is.
    MMEvaluationLimits next() const;
    /// The same for what can be done without: where nothing is left, a moment.
    MMEvaluationLimits rest() const;

private:
    using Clock = std::chrono::steady_clock;

    MMEvaluationLimits limits_;
    std::optional<Clock::time_point> deadline_;
};

}  // namespace mmq
