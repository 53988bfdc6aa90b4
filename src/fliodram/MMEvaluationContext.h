// What an evaluation runs in: the model, and the limits on what it may cost.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

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
    /// Bytes that are kept at a time: of what lets keep, of collections that are sorted, reversed
    /// or compared, of the keys by which they are sorted, of texts whose other half is still to be
    /// evaluated, and of targets that the model copied for a path that is followed depth first.
    std::size_t memory = std::size_t{1} << 30U;
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

    /// The number of the application that is under way, from 1; no other context has the same, but
    /// for one after 4 billion applications.
    std::uint64_t getApplication() const { return application_; }

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

    /// Counts the steps of an operation by the processor time that it took. Of an application some
    /// 10 ms are free, so that a moment more or less, as caches have it, changes no outcome.
    void countTime(std::chrono::nanoseconds taken);

    /// Throws where an operation that cannot be stopped might take more steps than are left; for
    /// one that might take long, as checkTime() does.
    void checkForesight(std::uint64_t steps, std::chrono::nanoseconds worst) const;

    /// Throws where the time is up, or might be by more than some 50 ms when an operation ends that
    /// cannot be stopped; or where the evaluation is not wanted any more.
    void checkTime(std::chrono::nanoseconds worst) const;

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

    /// Counts bytes that the evaluation keeps, before it does; throws where they are too many.
    void keep(std::size_t size) {
        if (size > limits_.memory || kept_ > limits_.memory - size) {
            throwTooMuchMemory();
        }
        kept_ += size;
    }
    /// Counts that bytes are kept no longer. What is not given back ends with the application.
    void giveBack(std::size_t size) { kept_ -= size < kept_ ? size : kept_; }

private:
    friend class MMTextBuffer;

    static constexpr std::size_t bytesPerStep = 64;

    void startClock();
    void refill(std::uint64_t count);
    void checkCancelled() const;
    [[noreturn]] void throwTooManySteps() const;
    [[noreturn]] static void throwTimeIsUp();
    [[noreturn]] static void throwTooDeep();
    [[noreturn]] void throwCollectionTooLarge() const;
    [[noreturn]] void throwTextTooLong() const;
    [[noreturn]] void throwTooMuchMemory() const;

    const MMModel& model_;
    MMEvaluationLimits limits_;
    std::uint64_t application_;
    std::uint64_t budget_ = 0;     // steps until somebody looks at the clock
    std::uint64_t remaining_ = 0;  // steps after those
    std::chrono::steady_clock::time_point deadline_;
    std::uintptr_t stackLimit_ = 0;
    std::size_t kept_ = 0;  // bytes
    std::chrono::nanoseconds freeTime_{0};
    std::string spareText_;  // of an MMTextBuffer that is gone; its characters mean nothing
};

/// Counts the bytes that a frame of an evaluation keeps, for as long as this object lives in it.
class MMKeptBytes {
public:
    explicit MMKeptBytes(MMEvaluationContext& context) : context_(context) {}
    MMKeptBytes(const MMKeptBytes&) = delete;
    MMKeptBytes& operator=(const MMKeptBytes&) = delete;
    ~MMKeptBytes() {
        if (size_ != 0) {
            context_.giveBack(size_);
        }
    }

    void add(std::size_t size) {
        context_.keep(size);
        size_ += size;
    }
    /// The same of a text whose other half is evaluated; a short one is not worth it, since
    /// expressions are nested to some thousand levels at most. Returns whether it was added.
    bool addLong(std::size_t size) {
        constexpr std::size_t shortest = 4096;
        if (size < shortest) {
            return false;
        }
        add(size);
        return true;
    }
    /// Counts that some of what was added is kept no longer.
    void remove(std::size_t size) {
        context_.giveBack(size);
        size_ -= size;
    }

private:
    MMEvaluationContext& context_;
    std::size_t size_ = 0;
};
