// Makes something once, at the first need of it.
#pragma once

#include <atomic>
#include <mutex>

/// Tells whether something is made, and lets one thread make it.
///
/// Stands beside what is made, in the same object. Any number of threads may ask at once. Unlike
/// std::call_once it lets no exception pass through the C library, which ends the process where
/// that needs memory and has none.
class OrvOnce {
public:
    /// Calls `make` unless a call of it has returned before; others wait meanwhile. What it throws
    /// reaches the caller, and the next to ask calls it again.
    template <class Make>
    void run(const Make& make) {
        if (isMade_.load(std::memory_order_acquire)) {
            return;
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!isMade_.load(std::memory_order_relaxed)) {
            make();
            isMade_.store(true, std::memory_order_release);
        }
    }

private:
    std::mutex mutex_;
    std::atomic<bool> isMade_{false};
};
