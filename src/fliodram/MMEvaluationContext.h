// What an evaluation runs in: the model, and the limits on what it may cost.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "fliodram/MMModel.h"
#include "support/OrvStack.h"

/// What one application of an expression to one object may cost. A limit that is reached ends the
/// application with an MMEvaluationError of the limit's kind.
struct MMEvaluationLimits {
    /// Steps: elements looked at, and 64 bytes of text written, copied or compared; some
    /// nanoseconds each.
    std::uint64_t steps = 1'000'000'000;
    /// Time since the application began. Zero for no limit; a negative one, such as what is left of
    /// a time that is past, is reached at once.
    std::chrono::nanoseconds time{0};
    /// Elements of one collection.
    std::size_t collectionSize = std::size_t{1} << 24U;
    /// Bytes of one text.
    std::size_t textSize = std::size_t{1} << 26U;
    /// A flag of the host's, who sets it on another thread or in a signal handler to call the
    /// application off; null for none. Looked at as often as the clock, and borrowed.
    const std::atomic<bool>* isCancelled = nullptr;
};

/// The surroundings of evaluations, one after the other, on one thread.
///
/// Belongs to the host, who may use it for any number of expressions on its model; the model must
/// outlive it. An application that failed leaves the context ready for the next one.
class __attribute__((visibility("default"))) MMEvaluationContext {
public:
    explicit MMEvaluationContext(const MMModel& model, const MMEvaluationLimits& limits = {});
    MMEvaluationContext(const MMEvaluationContext&) = delete;
    MMEvaluationContext& operator=(const MMEvaluationContext&) = delete;

    const MMModel& getModel() const { return model_; }
    const MMEvaluationLimits& getLimits() const { return limits_; }
    void setLimits(const MMEvaluationLimits& limits) { limits_ = limits; }

    /// Called by an abstraction that a host applies: the limits count from here. Throws where the
    /// limit on the time is negative.
    void begin();

    /// Counts steps; called inside every loop of an evaluation. Throws at a limit.
    void step(std::uint64_t count = 1) {
        if (count > budget_) {
            refill(count);
        }
        budget_ -= count;
    }

    /// Counts the steps of making a text longer, and throws where it becomes too long. To be called
    /// before it does.
    void countText(std::size_t size, std::size_t added) {
        step(1 + added / bytesPerStep);
        checkTextSize(size + added);
    }

    /// Counts the steps of going over bytes at once, as copying, comparing and converting do; a
    /// short text takes none.
    void countBytes(std::size_t size) {
        if (size >= bytesPerStep) {
            step(size / bytesPerStep);
        }
    }

    /// The same of a text that is copied, which must not be too long.
    void countCopy(std::size_t size) {
        checkTextSize(size);
        countBytes(size);
    }

    /// Throws when the calling frame leaves too little of the thread's stack.
    void checkDepth() const {
        if (OrvStack::isBelow(stackLimit_)) {
            throwTooDeep();
        }
    }

    /// Throw when a collection, or a text, of this size is past its limit.
    void checkCollectionSize(std::size_t size) const {
        if (size > limits_.collectionSize) {
            throwCollectionTooLarge();
        }
    }
    void checkTextSize(std::size_t size) const {
        if (size > limits_.textSize) {
            throwTextTooLong();
        }
    }

private:
    static constexpr std::size_t bytesPerStep = 64;

    void startClock();
    void refill(std::uint64_t count);
    [[noreturn]] static void throwTimeIsUp();
    [[noreturn]] static void throwTooDeep();
    [[noreturn]] void throwCollectionTooLarge() const;
    [[noreturn]] void throwTextTooLong() const;

    const MMModel& model_;
    MMEvaluationLimits limits_;
    std::uint64_t budget_ = 0;     // steps until somebody looks at the clock
    std::uint64_t remaining_ = 0;  // steps after those
    std::chrono::steady_clock::time_point deadline_;
    std::uintptr_t stackLimit_ = 0;
};
