// Work divided among threads: all of it is done once, and an exception ends it.
#include "Jobs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace {

TEST(Jobs, EveryBlockIsDoneOnceByOneOfTheWorkers) {
    for (const std::size_t jobs : {1U, 2U, 7U, 1000U}) {
        for (const std::size_t count : {0U, 1U, 5U, 3000U}) {
            std::vector<int> done(count, 0);
            std::vector<std::vector<std::size_t>> byWorker(jobs);
            mmq::runBlocks(jobs, count, [&](std::size_t worker, std::size_t block) {
                ++done[block];
                byWorker.at(worker).push_back(block);
            });
            EXPECT_EQ(done, std::vector<int>(count, 1)) << jobs << " jobs";
            for (const std::vector<std::size_t>& blocks : byWorker) {
                EXPECT_TRUE(std::is_sorted(blocks.begin(), blocks.end()));
            }
        }
    }
}

TEST(Jobs, AnExceptionEndsTheWorkAndReachesTheCaller) {
    std::atomic<std::size_t> begun{0};
    const auto work = [&begun](std::size_t /*worker*/, std::size_t block) {
        ++begun;
        if (block == 3) {
            throw std::runtime_error("block 3");
        }
    };
    EXPECT_THROW(mmq::runBlocks(3, 1'000'000'000, work), std::runtime_error);
    EXPECT_LT(begun.load(), 1'000'000'000U);
}

TEST(Jobs, ResultsAreHandedOnInTheOrderOfTheBlocks) {
    for (const std::size_t jobs : {1U, 2U, 7U}) {
        std::vector<std::size_t> taken;
        mmq::InOrder<std::size_t> output([&taken](std::size_t result) { taken.push_back(result); });
        mmq::runBlocks(jobs, 3000, [&output](std::size_t /*worker*/, std::size_t block) {
            output.put(block, block * block);
        });
        std::vector<std::size_t> expected(3000);
        std::iota(expected.begin(), expected.end(), 0);
        std::transform(expected.begin(), expected.end(), expected.begin(),
                       [](std::size_t block) { return block * block; });
        EXPECT_EQ(taken, expected) << jobs << " jobs";
    }
}

}  // namespace
