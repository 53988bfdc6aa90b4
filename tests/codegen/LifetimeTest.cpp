// Compilations and evaluations give back every allocation, whatever becomes of them.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "codegen/SourceMap.h"
#include "evaluation/SmallModel.h"
#include "fliodram/MMEvaluationError.h"
#include "foundation/Tracked.h"
#include "support/AllocationCounter.h"
#include "support/Corpus.h"
#include "support/SilentErrors.h"

namespace {

constexpr std::size_t compilations = 10000;
constexpr std::size_t entryPoints = 4;

// Only the bodies are allocated, each with what its list of links begins with.
TEST(Lifetime, PointersAllocateNothing) {
    const NodePtr first = makeNode();
    const NodePtr second = makeNode();
    const std::ptrdiff_t before = AllocationCounter::live();
    std::array<NodePtr, 100> copies;
    copies.fill(first);
    first->setLink(second);
    second->setLink(copies.back());
    EXPECT_EQ(AllocationCounter::live(), before);
}

/// The beginning of a text, for a failing row.
std::string shown(const std::string& text) { return text.substr(0, 200); }

CorpusOutcome outcomeOf(const std::string& text) {
    RecordingDialogs dialogs;
    const bool isAssociation =
        static_cast<bool>(ExprParser::parseComplexAssociation(dialogs, text));
    const bool isAttribute = static_cast<bool>(ExprParser::parseAssociatedAttribute(dialogs, text));
    dialogs.messages.clear();
    const bool isCondition = static_cast<bool>(ExprParser::parseCondition(dialogs, text));
    EXPECT_TRUE(isCondition ? isAttribute && !isAssociation : !(isAttribute && isAssociation));
    if (isCondition || isAttribute || isAssociation) {
        return isCondition   ? CorpusOutcome::condition
               : isAttribute ? CorpusOutcome::attribute
                             : CorpusOutcome::association;
    }
    const std::string& last = dialogs.messages.back();
    if (last == "0:0 ExprParser 0 Parse failed.") {
        return CorpusOutcome::syntaxError;
    }
    if (last != "0:0 ExprParser 0 Expression did not type check.") {
        return CorpusOutcome::exception;
    }
    const bool isRefusedAlone =
        dialogs.messages.size() == 4 &&
        dialogs.messages[1].find(" A complete expression must ") != std::string::npos;
    return isRefusedAlone ? CorpusOutcome::otherType : CorpusOutcome::typeError;
}

TEST(Corpus, EveryTextHasItsOutcome) {
    const SilentErrors silent;
    for (const CorpusText& row : corpus()) {
        EXPECT_EQ(static_cast<int>(outcomeOf(row.text)), static_cast<int>(row.outcome))
            << shown(row.text);
    }
}

// Applies what was compiled, if anything was, to every object of the model. That there is no value
// or that a limit is reached will do.
template <class Expression>
void evaluate(const OrvCountedPtr<Expression>& expression, const SmallModel& model) {
    MMEvaluationLimits limits;
    limits.steps = 2000;
    MMEvaluationContext context(model.view(), limits);
    for (std::size_t i = 0; expression && i < model.things().size(); ++i) {
        try {
            (void)expression->apply(context, model.things()[i].handle());
        } catch (const MMEvaluationError&) {
            continue;
        }
    }
}

void compile(const std::string& text, const SmallModel* model) {
    RecordingDialogs dialogs;
    const auto condition = ExprParser::parseCondition(dialogs, text);
    const auto attribute = ExprParser::parseAssociatedAttribute(dialogs, text);
    const auto association = ExprParser::parseComplexAssociation(dialogs, text);
    SourceMap map;
    const auto mapped = ExprParser::parseMappedAssociatedAttribute(dialogs, text, map);
    EXPECT_EQ(static_cast<bool>(mapped), static_cast<bool>(attribute)) << shown(text);
    if (model != nullptr) {
        evaluate(condition, *model);
        evaluate(attribute, *model);
        evaluate(association, *model);
    }
}

// Runs the whole corpus until there were enough compilations; each text leaves as many allocations
// as it found. The first round fills what the process keeps.
void expectNothingLeft(const SmallModel* model) {
    const SilentErrors silent;
    const std::size_t rounds = compilations / (corpus().size() * entryPoints) + 1;
    for (std::size_t round = 0; round <= rounds; ++round) {
        for (const CorpusText& row : corpus()) {
            const std::ptrdiff_t before = AllocationCounter::live();
            compile(row.text, model);
            const std::ptrdiff_t after = AllocationCounter::live();
            if (round > 0) {
                EXPECT_EQ(after, before) << shown(row.text);
            }
        }
    }
}

TEST(Lifetime, OfCompilations) { expectNothingLeft(nullptr); }

TEST(Lifetime, OfEvaluations) {
    const SmallModel model;
    expectNothingLeft(&model);
}

// What was compiled stays whole while others come and go, and takes all that it has with it.
TEST(Lifetime, OfWhatACompilationReturns) {
    const SilentErrors silent;
    const SmallModel model;
    const auto compiled = [](const std::string& text) {
        RecordingDialogs dialogs;
        return ExprParser::parseComplexAssociation(dialogs, text);
    };
    for (const CorpusText& row : corpus()) {
        compile(row.text, &model);
        const std::ptrdiff_t before = AllocationCounter::live();
        {
            auto expression = compiled(row.text);
            const std::ptrdiff_t held = AllocationCounter::live() - before;
            EXPECT_EQ(held > 0, row.outcome == CorpusOutcome::association) << shown(row.text);
            const auto other = compiled(row.text);
            EXPECT_EQ(AllocationCounter::live() - before, 2 * held) << shown(row.text);
            expression = nullptr;
            EXPECT_EQ(AllocationCounter::live() - before, held) << shown(row.text);
            evaluate(other, model);
        }
        EXPECT_EQ(AllocationCounter::live(), before) << shown(row.text);
    }
}

}  // namespace
