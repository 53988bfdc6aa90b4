// Values, the evaluation of attributes, and the limits of a context.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMAttrExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTextBuffer.h"
#include "fliodram/StructModel.h"

namespace {

TEST(MMValue, AsString) {
    const std::vector<std::pair<MMValue, std::string>> cases = {
        {MMValue(true), "true"},
        {MMValue(false), "false"},
        {MMValue(0), "0"},
        {MMValue(std::numeric_limits<int>::min()), "-2147483648"},
        {MMValue(0.1), "0.1"},
        {MMValue(2.0), "2"},
        {MMValue(-0.0), "-0"},
        {MMValue(1e300), "1e+300"},
        {MMValue(1.0 / 3.0), "0.3333333333333333"},
        {MMValue(std::numeric_limits<double>::infinity()), "inf"},
        {MMValue(""), ""},
        {MMValue(OrvString("a b")), "a b"},
        {MMValue(std::string("moved")), "moved"},
        {MMValue::borrow("lent"), "lent"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(value.asString().data(), text);
        EXPECT_EQ(MMValue(value).asString().data(), text) << "the copy";
    }
}

OrvCyclicPtr<MMValueAbsExpr> attributeNamed(const MMValue& name) {
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMConstantExpr> constant(new MMConstantExpr(name));
    return OrvCyclicPtr<MMValueAbsExpr>(
        new MMValueAbsExpr(variable, OrvCyclicPtr<MMAttrExpr>(new MMAttrExpr(constant, variable))));
}

TEST(MMAttrExpr, ReadsTextsAndTheEmptyTextWhereThereIsNothing) {
    const std::vector<Thing> things = {
        {"Class", "c1", {{"name", "Order"}, {"42", "answer"}, {"true", "yes"}}, {}}};
    const StructModel model(things);
    MMEvaluationContext context(model);
    const MMObject object = things[0].handle();
    EXPECT_EQ(attributeNamed(MMValue("name"))->apply(context, object).getText(), "Order");
    EXPECT_EQ(attributeNamed(MMValue(42))->apply(context, object).getText(), "answer");
    EXPECT_EQ(attributeNamed(MMValue(true))->apply(context, object).getText(), "yes");
    EXPECT_EQ(attributeNamed(MMValue("none"))->apply(context, object).getText(), "");
    EXPECT_EQ(attributeNamed(MMValue("name"))->apply(context, mmNoObject).getText(), "");
}

TEST(MMAttrExpr, LooksNamesUpOnceAModel) {
    std::vector<Thing> things = {{"Class", "c1", {{"x", "of the first"}}, {}}};
    std::vector<Thing> others = {{"Class", "c2", {{"a", "1"}, {"x", "of the second"}}, {}}};
    StructModel first(things);
    const StructModel second(others);
    EXPECT_NE(first.identity(), second.identity());
    (void)second.attributeKey("a");
    const OrvCyclicPtr<MMValueAbsExpr> expression = attributeNamed(MMValue("x"));
    MMEvaluationContext inFirst(first);
    MMEvaluationContext inSecond(second);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(expression->apply(inFirst, things[0].handle()).getText(), "of the first");
        EXPECT_EQ(expression->apply(inSecond, others[0].handle()).getText(), "of the second");
        first.renewKeys();
    }
}

/// Composes values in the buffer.
class ComposingModel : public StructModel {
public:
    using StructModel::StructModel;
    std::string_view attribute(MMObject object, MMKey key, std::string& buffer) const override {
        std::string value;
        buffer += StructModel::attribute(object, key, value);
        return buffer;
    }
};

TEST(MMAttrExpr, GivesTheModelAnEmptyBuffer) {
    const std::vector<Thing> things = {{"Class", "c1", {{"name", "Order"}}, {}}};
    const ComposingModel model(things);
    MMEvaluationContext context(model);
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMConstantExpr> name(new MMConstantExpr(MMValue("name")));
    const OrvCyclicPtr<MMAttrExpr> attribute(new MMAttrExpr(name, variable));
    const MMVariableBinding binding(*variable, things[0].handle());
    context.begin();
    std::string buffer = "of before";
    EXPECT_EQ(attribute->evaluateText(context, buffer), "Order");
    EXPECT_EQ(attribute->evaluateText(context, buffer), "Order");
}

TEST(MMValueAbsExpr, RestoresItsVariable) {
    const std::vector<Thing> things = {{"Class", "c1", {{"name", "Order"}}, {}}};
    const StructModel model(things);
    MMEvaluationContext context(model);
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMConstantExpr> name(new MMConstantExpr("name"));
    const OrvCyclicPtr<MMAttrExpr> body(new MMAttrExpr(name, variable));
    const OrvCyclicPtr<MMValueAbsExpr> expression(new MMValueAbsExpr(variable, body));
    EXPECT_EQ(expression->apply(context, things[0].handle()).getText(), "Order");
    EXPECT_EQ(variable->evaluate(context), mmNoObject);
}

/// A model that fails when it is asked for an attribute.
class FailingModel : public StructModel {
public:
    explicit FailingModel(const std::vector<Thing>& things) : StructModel(things) {}
    std::string_view attribute(MMObject object, MMKey key, std::string& buffer) const override {
        switch (failure) {
            case 1:
                throw std::runtime_error("The connection is lost.");
            case 2:
                throw 2;  // NOLINT(hicpp-exception-baseclass): a host may throw anything
            case 3:
                throw std::bad_alloc();
            default:
                return StructModel::attribute(object, key, buffer);
        }
    }
    int failure = 0;
};

TEST(MMValueAbsExpr, WhatAModelThrowsBecomesAnEvaluationError) {
    const std::vector<Thing> things = {{"Class", "c1", {{"name", "Order"}}, {}}};
    FailingModel model(things);
    MMEvaluationContext context(model);
    const OrvCyclicPtr<MMValueAbsExpr> expression = attributeNamed(MMValue("name"));
    const std::vector<std::string> sentences = {"The connection is lost.",
                                                "The model failed without saying why."};
    for (model.failure = 1; model.failure <= 2; ++model.failure) {
        try {
            (void)expression->apply(context, things[0].handle());
            ADD_FAILURE() << "no error";
        } catch (const MMEvaluationError& error) {
            EXPECT_EQ(error.what(), sentences[static_cast<std::size_t>(model.failure) - 1]);
            EXPECT_FALSE(error.isLimit());
        }
    }
    EXPECT_THROW((void)expression->apply(context, things[0].handle()), std::bad_alloc);
    model.failure = 0;
    EXPECT_EQ(expression->apply(context, things[0].handle()).getText(), "Order");
}

// Of all sizes, one inside the other and one after the other.
TEST(MMTextBuffer, BeginsEmptyAndGivesWhatWasAppended) {
    const std::vector<Thing> things;
    const StructModel model(things);
    MMEvaluationContext context(model);
    for (const std::size_t size : {0U, 20U, 3000U, 1U, 2048U, 2047U, 100000U, 15U}) {
        MMTextBuffer outer(context);
        EXPECT_EQ(outer.text(), "") << size;
        outer.text().append(size, 'a');
        for (int round = 0; round < 2; ++round) {
            MMTextBuffer inner(context);
            EXPECT_EQ(inner.text(), "") << size;
            inner.text().append(size / 2 + 1, 'b');
            EXPECT_EQ(inner.release(), std::string(size / 2 + 1, 'b'));
        }
        EXPECT_EQ(outer.text().append("c"), std::string(size, 'a') + 'c');
        EXPECT_EQ(outer.release(), std::string(size, 'a') + 'c');
    }
}

// What a text takes counts as kept, and must not follow from what was evaluated before.
TEST(MMTextBuffer, TakesTheSameAfterOtherTexts) {
    const std::vector<Thing> things;
    const StructModel model(things);
    const auto capacityOf = [](MMEvaluationContext& context, std::size_t size) {
        MMTextBuffer buffer(context);
        for (std::size_t i = 0; i < size; i += 100) {
            buffer.text().append(100, 'a');
        }
        return buffer.release().capacity();
    };
    MMEvaluationContext used(model);
    for (const std::size_t size : {100U, 2000U, 2100U, 1000U, 3000U, 5000U, 10000U, 2100U, 100U}) {
        MMEvaluationContext fresh(model);
        EXPECT_EQ(capacityOf(used, size), capacityOf(fresh, size)) << size;
    }
}

TEST(MMEvaluationContext, LimitsEndAnEvaluation) {
    using Kind = MMEvaluationError::Kind;
    const std::vector<Thing> things;
    const StructModel model(things);
    MMEvaluationLimits limits;
    limits.steps = 10000;
    limits.collectionSize = 3;
    limits.textSize = 5;
    MMEvaluationContext context(model, limits);
    const auto kindOf = [](const auto& action) {
        try {
            action();
        } catch (const MMEvaluationError& error) {
            EXPECT_TRUE(error.isLimit());
            return std::make_pair(error.getKind(), std::string(error.what()));
        }
        return std::make_pair(Kind::failure, std::string("no error"));
    };
    const auto takeSteps = [&context](std::uint64_t count) {
        for (std::uint64_t i = 0; i < count; ++i) {
            context.step();
        }
    };
    const std::pair<Kind, std::string> tooManySteps = {
        Kind::stepLimit, "The evaluation needs more than 10000 steps."};
    for (int round = 0; round < 2; ++round) {
        context.begin();
        takeSteps(10000);
        EXPECT_EQ(kindOf([&] { context.step(); }), tooManySteps);
        context.begin();
        context.step(9999);
        EXPECT_EQ(kindOf([&] { context.step(2); }), tooManySteps);
    }
    context.begin();
    EXPECT_EQ(kindOf([&] { context.step(~std::uint64_t{0}); }), tooManySteps);
    context.checkCollectionSize(3);
    EXPECT_EQ(kindOf([&] { context.checkCollectionSize(4); }),
              std::make_pair(Kind::collectionLimit,
                             std::string("A collection has more than 3 elements.")));
    context.checkTextSize(5);
    EXPECT_EQ(kindOf([&] { context.checkTextSize(6); }),
              std::make_pair(Kind::textLimit, std::string("A text is longer than 5 bytes.")));
    limits.memory = 8;
    context.setLimits(limits);
    const std::pair<Kind, std::string> tooMuchMemory = {Kind::memoryLimit,
                                                        "The evaluation keeps more than 8 bytes."};
    for (int round = 0; round < 2; ++round) {
        context.begin();
        context.keep(5);
        EXPECT_EQ(kindOf([&] { context.keep(4); }), tooMuchMemory);
        EXPECT_EQ(kindOf([&] { context.keep(~std::size_t{0}); }), tooMuchMemory);
        context.giveBack(1);
        context.keep(4);
    }
    limits.time = std::chrono::milliseconds(1);
    limits.steps = ~std::uint64_t{0};
    context.setLimits(limits);
    context.begin();
    EXPECT_EQ(kindOf([&] { takeSteps(~std::uint64_t{0}); }),
              std::make_pair(Kind::timeLimit,
                             std::string("The evaluation takes longer than its time limit.")));
    limits.time = std::chrono::nanoseconds::max();
    context.setLimits(limits);
    EXPECT_EQ(kindOf([&] {
                  context.begin();
                  takeSteps(10000);
              }).second,
              "no error");
    for (const auto past : {std::chrono::nanoseconds(-1), std::chrono::nanoseconds::min()}) {
        limits.time = past;
        context.setLimits(limits);
        EXPECT_EQ(kindOf([&] { context.begin(); }).first, Kind::timeLimit);
    }
    std::atomic<bool> isCancelled{false};
    limits.time = {};
    limits.isCancelled = &isCancelled;
    context.setLimits(limits);
    context.begin();
    takeSteps(10000);
    isCancelled = true;
    EXPECT_EQ(kindOf([&] { takeSteps(10000); }),
              std::make_pair(Kind::cancelled, std::string("The evaluation was called off.")));
}

}  // namespace
