// The memory that a pattern asks for before its engine begins.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "rw/RWCRegexp.h"
#include "support/AllocationCounter.h"

namespace {

// The engine does not survive that an allocation fails inside it: there is one before, behind those
// that weigh the pattern.
TEST(Patterns, AreBegunOnlyWhereThereIsMemory) {
    const auto passes = [](long number, const auto& work) {
        const FailingAllocation failing(number, true);
        try {
            work();
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    };
    const std::string pattern = "a+";
    long weighing = 0;
    while (!passes(weighing, [&] { (void)RWCRegexp::weigh(pattern); })) {
        ++weighing;
    }
    EXPECT_FALSE(passes(weighing, [&] { (void)RWCRegexp(pattern); }));
    EXPECT_TRUE(passes(weighing + 1, [&] { (void)RWCRegexp(pattern); }));
}

}  // namespace
