#include "Jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace mmq {

namespace {

/// What the workers of one call share.
class Blocks {
public:
    Blocks(std::size_t count, const std::function<void(std::size_t, std::size_t)>& work)
        : count_(count), work_(work) {}

    void run(std::size_t worker) noexcept {
        try {
            for (std::size_t block = next_++; block < count_; block = next_++) {
                work_(worker, block);
            }
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex_);
            next_ = count_;
            error_ = error_ ? error_ : std::current_exception();
        }
    }

    void rethrow() const {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

private:
    std::size_t count_;
    const std::function<void(std::size_t, std::size_t)>& work_;
    std::atomic<std::size_t> next_{0};
    std::mutex mutex_;
    std::exception_ptr error_;
};

}  // namespace

std::size_t jobsFor(std::optional<std::size_t> asked) {
    constexpr std::size_t most = 256;
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    return std::min(asked.value_or(cores), most);
}

std::size_t blockSize(std::size_t objectCount, std::size_t jobs) {
    constexpr std::size_t blocksOfJob = 32;
    return std::clamp<std::size_t>(objectCount / (jobs * blocksOfJob), 1, 256);
}

void runBlocks(std::size_t jobs, std::size_t blockCount,
               const std::function<void(std::size_t worker, std::size_t block)>& work) {
    Blocks blocks(blockCount, work);
    std::vector<std::thread> threads;
    try {
        for (std::size_t worker = 1; worker < std::min(jobs, blockCount); ++worker) {
            threads.emplace_back([&blocks, worker] { blocks.run(worker); });
        }
    } catch (...) {
        // The threads that there are do the work.
    }
    blocks.run(0);
    for (std::thread& thread : threads) {
        thread.join();
    }
    blocks.rethrow();
}

}  // namespace mmq
