// Large sets of keys, whose table grows while an evaluation may be called off.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <vector>

#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectSet.h"
#include "fliodram/StructModel.h"

namespace {

/// A number as a key, which calls the evaluation off when so many more keys have been entered.
struct CountedKey {
    std::size_t number = 0;

    bool operator==(const CountedKey& other) const { return number == other.number; }
    std::size_t hash() const {
        ++hashed;
        isCancelled = isCancelled || hashed == cancelAt;
        return mmHash(number);
    }

    static inline std::size_t hashed = 0;
    static inline std::size_t cancelAt = 0;
    static inline std::atomic<bool> isCancelled = false;
};

constexpr std::size_t full = std::size_t{1} << 18U;  // keys fill the table

TEST(KeySet, GrowsInPiecesThatCanBeCalledOff) {
    const std::vector<Thing> nothing;
    const StructModel model(nothing);
    MMEvaluationLimits limits;
    limits.isCancelled = &CountedKey::isCancelled;
    MMEvaluationContext context(model, limits);
    context.begin();
    MMKeySet<CountedKey> keys;
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < full; ++i) {
            ASSERT_TRUE(keys.insert(context, {i}));
        }
        CountedKey::hashed = 0;
        CountedKey::cancelAt = full / 2;
        EXPECT_THROW((void)keys.insert(context, {full}), MMEvaluationError);
        EXPECT_LT(CountedKey::hashed, full / 2 + 10'000);
        CountedKey::isCancelled = false;
        CountedKey::cancelAt = 0;
        // what throws leaves a set
        EXPECT_FALSE(keys.insert(context, {full - 1}));
        EXPECT_TRUE(keys.insert(context, {full + 1}));
        EXPECT_FALSE(keys.insert(context, {full}));
        EXPECT_EQ(keys.size(), full + 2);
        keys.clear();
    }
}

}  // namespace
