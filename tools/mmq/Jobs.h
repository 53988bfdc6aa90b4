// Work that is divided among threads.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace mmq {

/// The number of threads that are to work: what was asked for, else one for each core.
std::size_t jobsFor(std::optional<std::size_t> asked);

/// How many of so many objects make a block: few enough that the threads end at about the same
/// time, whatever each object takes.
std::size_t blockSize(std::size_t objectCount, std::size_t jobs);

/// Calls `work(worker, block)` once for every block from 0 up to `blockCount`, on up to `jobs`
/// threads of which the caller's is one. A worker, numbered from 0, takes one block after the
/// other, in rising order, so that what belongs to a worker is used by one thread at a time.
/// Returns when all is done. When a call throws, no further blocks are begun, and the first
/// exception leaves this one.
void runBlocks(std::size_t jobs, std::size_t blockCount,
               const std::function<void(std::size_t worker, std::size_t block)>& work);

/// Hands on what the blocks yield in the order of the blocks, each result as soon as all before it
/// are there. Belongs to the call of runBlocks(); any thread may put.
template <class Result>
class InOrder {
public:
    /// `take` is called for one result after the other, on the thread that put it or a later one.
    explicit InOrder(std::function<void(Result)> take) : take_(std::move(take)) {}

    void put(std::size_t block, Result result) {
        const std::lock_guard<std::mutex> lock(mutex_);
        waiting_.emplace(block, std::move(result));
        while (!waiting_.empty() && waiting_.begin()->first == next_) {
            ++next_;
            take_(std::move(waiting_.extract(waiting_.begin()).mapped()));
        }
    }

private:
    std::function<void(Result)> take_;
    std::mutex mutex_;
    std::map<std::size_t, Result> waiting_;  // by block
    std::size_t next_ = 0;
};

}  // namespace mmq
