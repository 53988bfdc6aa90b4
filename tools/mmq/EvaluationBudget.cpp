#include "EvaluationBudget.h"

#include <algorithm>

#include "fliodram/MMEvaluationError.h"

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

// Short evaluations do not look at the clock themselves.
MMEvaluationLimits EvaluationBudget::next() const {
    if (deadline_ && Clock::now() > *deadline_) {
        throwLogged(MMEvaluationError(MMEvaluationError::Kind::timeLimit,
                                      "The evaluation takes longer than its time limit."));
    }
    return rest();
}

MMEvaluationLimits EvaluationBudget::rest() const {
    MMEvaluationLimits limits = limits_;
    if (deadline_) {
        limits.time = std::max<std::chrono::nanoseconds>(*deadline_ - Clock::now(),
                                                         std::chrono::nanoseconds(1));
    }
    return limits;
}

}  // namespace mmq
