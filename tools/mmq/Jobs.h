// Work that is divided among threads.
#pragma once

#include <cstddef>
#include <functional>

namespace mmq {

/// Calls `work(worker, block)` once for every block from 0 up to `blockCount`, on up to `jobs`
/// threads of which the caller's is one. A worker, numbered from 0, takes one block after the
/// other, in rising order, so that what belongs to a worker is used by one thread at a time.
/// Returns when all is done. When a call throws, no further blocks are begun, and the first
/// exception leaves this one.
void runBlocks(std::size_t jobs, std::size_t blockCount,
               const std::function<void(std::size_t worker, std::size_t block)>& work);

}  // namespace mmq
