// Random expressions, compiled and evaluated naively. EVALUATION_SEED repeats a run.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>
#include <utility>
#include <vector>

#include "evaluation/Comparison.h"

namespace {

std::uint64_t chooseSeed() {
    const char* given = std::getenv("EVALUATION_SEED");
    return given != nullptr ? std::stoull(given) : std::random_device()();
}

/// Makes an expression smaller as long as `isFaulty` holds for its text: an operand becomes a leaf,
/// or gives way to an operand further in.
template <class Predicate>
void shrink(ExpressionTree& tree, const Predicate& isFaulty) {
    for (ExpressionTree* place : tree.subtrees()) {
        std::vector<ExpressionTree> replacements = {leafOf(place->type)};
        for (const ExpressionTree* below : place->subtrees()) {
            if (below != place && below->type == place->type) {
                replacements.push_back(*below);
            }
        }
        for (ExpressionTree& replacement : replacements) {
            const std::size_t size = place->text().size();
            std::swap(*place, replacement);
            if (place->text().size() < size && isFaulty(tree)) {
                return shrink(tree, isFaulty);
            }
            std::swap(*place, replacement);
        }
    }
}

TEST(RandomExpressions, HaveTheValueOfTheNaiveEvaluator) {
    constexpr int expressions = isInstrumented() ? 10'000 : 100'000;
    constexpr int largestSize = 14;
    constexpr int mostReports = 5;
    const std::uint64_t seed = chooseSeed();
    std::cout << "EVALUATION_SEED=" << seed << std::endl;
    const SmallModel model;
    Comparison comparison(model);
    ExpressionGenerator generator(seed);
    const auto anyObject = [&] { return &model.things()[generator.pick(model.things().size())]; };
    int reports = 0;
    for (int i = 0; i < expressions && reports < mostReports; ++i) {
        const TypeLetter type = "BIRSC"[generator.pick(5)];
        ExpressionTree tree =
            generator.generate(type, 1 + static_cast<int>(generator.pick(largestSize)));
        const std::vector<const Thing*> objects = {anyObject(), anyObject()};
        const std::string difference = comparison.difference(type, tree.text(), objects);
        if (!difference.empty()) {
            shrink(tree, [&](const ExpressionTree& smaller) {
                return CompiledText(type, smaller.text()).errors().empty() &&
                       !Comparison(model).difference(type, smaller.text(), objects).empty();
            });
            ADD_FAILURE() << "expression " << i << ": " << difference << "\nsmaller: "
                          << Comparison(model).difference(type, tree.text(), objects);
            ++reports;
        }
    }
    std::cout << comparison.values << " values, " << comparison.failures << " failures, "
              << comparison.skipped << " skipped" << std::endl;
    EXPECT_GT(comparison.values, expressions);
    EXPECT_GT(comparison.failures, expressions / 20);
    EXPECT_LT(comparison.skipped, expressions / 40);
}

}  // namespace
