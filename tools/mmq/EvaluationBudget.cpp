#include "EvaluationBudget.h"

#include <algorithm>

namespace mmq {

EvaluationBudget::EvaluationBudget(const Options& options) {
    if (options.maximumSteps) {
        limits_.steps = *options.maximumSteps;
    }
    if (options.timeoutSeconds) {
        constexpr double longest = 1e8;  // three years; a clock cannot count much more
        const std::chrono::duration<double> seconds(std::min(*options.timeoutSeconds, longest));
        deadline_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(seconds);
    }
}

MMEvaluationLimits EvaluationBudget::next() const {
    MMEvaluationLimits limits = limits_;
    if (deadline_) {
        limits.time = std::max<std::chrono::nanoseconds>(*deadline_ - Clock::now(),
                                                         std::chrono::nanoseconds(1));
    }
    return limits;
}

}  // namespace mmq
