// Targets that no expression is compiled to, and that a host can make all the same: each ends in
// its own sentence.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMCollectionExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMObjectComparisonExpr.h"
#include "fliodram/MMOperatorExpr.h"
#include "fliodram/MMRegExpExpr.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/MMTextExpr.h"
#include "fliodram/StructModel.h"
#include "support/OrvException.h"

namespace {

using Value = OrvCyclicPtr<MMValueExpr>;

Value constant(const MMValue& value) { return Value(new MMConstantExpr(value)); }

/// More objects than an integer can count, which nobody looks at.
class HugeCollection : public MMObjectCollectionExpr {
public:
    bool forEach(MMEvaluationContext& /*context*/, MMObjectConsumer& consumer) const override {
        const std::vector<MMObject> objects(std::size_t{1} << 16U);
        for (std::size_t i = 0; i < std::size_t{1} << 15U; ++i) {
            (void)consumer.take({objects.data(), objects.data() + objects.size()});
        }
        return true;
    }
    void print(MMTargetPrinter& /*printer*/) const override {}
};

TEST(HostTargets, EndInTheirOwnSentences) {
    const Value text = constant(MMValue("a"));
    const Value number = constant(MMValue(1));
    const OrvCyclicPtr<MMObjectCollectionExpr> huge(new HugeCollection);
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMObjectCollectionExpr> none(new MMAllInstancesExpr(text, variable));
    const std::vector<std::pair<Value, std::string>> rows = {
        {Value(new MMArithmeticExpr(text, MM_SUBTRACT, nullptr)), "Only a number can be negated."},
        {Value(new MMArithmeticExpr(text, MM_SUBTRACT, text)),
         "Texts can be joined with +, and nothing else."},
        {Value(new MMArithmeticExpr(number, MM_MULTIPLY, text)),
         "Texts can be joined with +, and nothing else."},
        {Value(new MMRelationalExpr(number, static_cast<MMRelOp>(7), number)),
         "A comparison has no known operator."},
        {Value(new MMObjectSetExpr(none, static_cast<MMSetOp>(7), none)),
         "A comparison of sets has no known operator."},
        {Value(new MMRegExpMatchExpr(constant(MMValue("\\pL{1000}")), text)),
         "The pattern \"\\\\pL{1000}\" is too long."},
        {Value(new MMCountExpr(huge)), "The size of a collection is out of the range of integers."},
    };
    const std::vector<Thing> things(1);
    const StructModel model(things);
    MMEvaluationContext context(model);
    for (const auto& [target, sentence] : rows) {
        const OrvCyclicPtr<MMValueAbsExpr> expression(new MMValueAbsExpr(variable, target));
        try {
            (void)expression->apply(context, things[0].handle());
            ADD_FAILURE() << "no error: " << sentence;
        } catch (const MMEvaluationError& error) {
            EXPECT_EQ(std::string(error.what()), sentence);
        }
    }
}

TEST(HostTargets, AreNotPrintedWhereTheyAreNestedTooDeeply) {
    Value value = constant(MMValue(1));
    for (int level = 0; level < 300'000; ++level) {
        value = Value(new MMArithmeticExpr(constant(MMValue(1)), MM_ADD, value));
    }
    try {
        (void)printedTarget(*value);
        ADD_FAILURE() << "no error";
    } catch (const OrvException& exception) {
        EXPECT_STREQ(exception.what(), "The expression is nested too deeply to be printed.");
    }
}

}  // namespace
