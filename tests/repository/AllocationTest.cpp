// Memory that runs out while documents are read and models are asked: std::bad_alloc reaches the
// caller, nothing leaks, and the next time all is right.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "repository/MemoryUses.h"
#include "repository/ModelDump.h"
#include "repository/ModelReader.h"
#include "support/AllocationCounter.h"

namespace {

// Runs what was made ready with an allocation failing, and then with none; whether one has failed.
bool failOnce(const MemoryUse::Run& run, long number, bool forGood, const std::string& whole) {
    bool hasFailed = true;
    try {
        const FailingAllocation failing(number, forGood);
        const std::string result = run();
        hasFailed = failing.hasFailed();  // one without which sorting does
        EXPECT_EQ(result, whole) << number;
    } catch (const std::bad_alloc&) {
    }
    EXPECT_EQ(run(), whole) << number;
    return hasFailed;
}

TEST(Allocation, EveryFailureReachesTheCaller) {
    pugi::set_memory_management_functions(AllocationCounter::allocate,
                                          AllocationCounter::deallocate);
    for (const MemoryUse& use : memoryUses()) {
        SCOPED_TRACE(use.name);
        const std::string whole = use.prepare()();
        for (const bool forGood : {false, true}) {
            bool hasFailed = true;
            for (long number = 0; hasFailed; ++number) {
                const std::ptrdiff_t before = AllocationCounter::live();
                hasFailed = failOnce(use.prepare(), number, forGood, whole);
                ASSERT_EQ(AllocationCounter::live(), before) << number;
            }
        }
    }
    pugi::set_memory_management_functions(std::malloc, std::free);
}

// One object refers to itself through each of 300 features, among objects of 2,000 classes.
TEST(Allocation, OfInversesIsProportionalToTheirLinks) {
    std::string document = R"({"objects":[{"id":"0","class":"C","associations":{"f0":["0"])";
    for (int i = 1; i < 300; ++i) {
        document += ",\"f" + std::to_string(i) + "\":[\"0\"]";
    }
    document += "}}";
    for (int i = 1; i < 2000; ++i) {
        const std::string number = std::to_string(i);
        document += R"(,{"id":")" + number + R"(","class":"C)" + number + "\"}";
    }
    const auto model = readModelText(document + "]}", "doc");
    const std::ptrdiff_t before = AllocationCounter::liveBytes();
    for (int i = 0; i < 300; ++i) {
        model->associationKey("inverse:f" + std::to_string(i));
    }
    EXPECT_LT(AllocationCounter::liveBytes() - before, 300 * 500);
    EXPECT_EQ(ask(*model, "0", "[inverse:f299]"), "0");
    EXPECT_EQ(ask(*model, "1", "[inverse:f299]"), "");
}

}  // namespace
