#include "fliodram/MMEvaluationContext.h"

#include <algorithm>
#include <string>

#include "fliodram/MMEvaluationError.h"

namespace {

using Clock = std::chrono::steady_clock;

// How many steps pass between two looks at the clock: well below a millisecond.
constexpr std::uint64_t stepsPerLook = 4096;

// By how much an operation that cannot be stopped may go past the limit on the time.
constexpr std::chrono::milliseconds largestSlack(50);

// How much of the time by which an operation counts takes no steps.
constexpr std::chrono::milliseconds freeTime(10);

// How much of a large stack, or of one without bounds, an evaluation takes before it is nested too
// deeply: less than the 64 MiB up to which the address sanitizer follows what is thrown there.
constexpr std::uintptr_t largestStack = std::uintptr_t{60} << 20U;

// Of each context, with room for those that follow. All threads count together.
std::uint64_t firstApplication() {
    static std::atomic<std::uint64_t> contexts = 0;
    return contexts.fetch_add(1, std::memory_order_relaxed) << 32U;
}

}  // namespace

MMEvaluationContext::MMEvaluationContext(const MMModel& model, const MMEvaluationLimits& limits)
    : model_(model), limits_(limits), application_(firstApplication()) {}

void MMEvaluationContext::begin() {
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    ++application_;
    stackLimit_ = std::max(OrvStack::limit(), here - std::min(here, largestStack));
    budget_ = 0;
    remaining_ = limits_.steps;
    kept_ = 0;
    freeTime_ = freeTime;
    if (limits_.time.count() != 0) {
        startClock();
    }
}

// A time that ends later than the clock can tell ends when the clock does.
void MMEvaluationContext::startClock() {
    if (limits_.time.count() < 0) {
        throwTimeIsUp();
    }
    const Clock::time_point now = Clock::now();
    const bool isEndless = limits_.time > Clock::time_point::max() - now;
    deadline_ = isEndless ? Clock::time_point::max() : now + limits_.time;
}

void MMEvaluationContext::countTime(std::chrono::nanoseconds taken) {
    constexpr std::uint64_t nanosecondsPerStep = 4;
    const std::chrono::nanoseconds free = std::min(taken, freeTime_);
    freeTime_ -= free;
    checkTime({});
    step(static_cast<std::uint64_t>((taken - free).count()) / nanosecondsPerStep);
}

// A look at the clock costs as much as a small search.
void MMEvaluationContext::checkForesight(std::uint64_t steps,
                                         std::chrono::nanoseconds worst) const {
    if (steps > budget_ + remaining_) {
        throwTooManySteps();
    }
    if (worst > largestSlack) {
        checkTime(worst);
    }
}

void MMEvaluationContext::checkTime(std::chrono::nanoseconds worst) const {
    checkCancelled();
    if (limits_.time.count() <= 0) {
        return;
    }
    const std::chrono::nanoseconds left = deadline_ - Clock::now();
    if (left.count() < 0) {
        throwTimeIsUp();
    }
    if (worst > largestSlack && worst - largestSlack > left) {
        throwLogged(MMEvaluationError(MMEvaluationError::Kind::timeLimit,
                                      "A pattern may take longer than the time that is left."));
    }
}

void MMEvaluationContext::refill(std::uint64_t count) {
    if (count > budget_ + remaining_) {
        throwTooManySteps();
    }
    checkTime({});
    const std::uint64_t granted =
        std::min(remaining_, std::max(stepsPerLook, count - std::min(count, budget_)));
    budget_ += granted;
    remaining_ -= granted;
}

void MMEvaluationContext::checkCancelled() const {
    if (limits_.isCancelled != nullptr && limits_.isCancelled->load(std::memory_order_relaxed)) {
        throwLogged(MMEvaluationError(MMEvaluationError::Kind::cancelled,
                                      "The evaluation was called off."));
    }
}

void MMEvaluationContext::throwTooManySteps() const {
    throwLogged(MMEvaluationError(
        MMEvaluationError::Kind::stepLimit,
        "The evaluation needs more than " + std::to_string(limits_.steps) + " steps."));
}

void MMEvaluationContext::throwTimeIsUp() {
    throwLogged(MMEvaluationError(MMEvaluationError::Kind::timeLimit,
                                  "The evaluation takes longer than its time limit."));
}

void MMEvaluationContext::throwTooDeep() {
    throwLogged(MMEvaluationError(MMEvaluationError::Kind::depthLimit,
                                  "The evaluation is nested too deeply."));
}

void MMEvaluationContext::throwCollectionTooLarge() const {
    throwLogged(MMEvaluationError(
        MMEvaluationError::Kind::collectionLimit,
        "A collection has more than " + std::to_string(limits_.collectionSize) + " elements."));
}

void MMEvaluationContext::throwTooMuchMemory() const {
    throwLogged(MMEvaluationError(
        MMEvaluationError::Kind::memoryLimit,
        "The evaluation keeps more than " + std::to_string(limits_.memory) + " bytes."));
}

void MMEvaluationContext::throwTextTooLong() const {
    throwLogged(
        MMEvaluationError(MMEvaluationError::Kind::textLimit,
                          "A text is longer than " + std::to_string(limits_.textSize) + " bytes."));
}
