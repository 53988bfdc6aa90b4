// Patterns within limits: what a search, a replacement and the compilation of a pattern may cost.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMOperatorExpr.h"
#include "fliodram/MMRegExpExpr.h"
#include "fliodram/StructModel.h"
#include "support/RepeatedText.h"

namespace {

using Kind = MMEvaluationError::Kind;
using std::chrono::milliseconds;

const std::vector<Thing> nothing;

OrvCyclicPtr<MMValueExpr> constant(std::string text) {
    return OrvCyclicPtr<MMValueExpr>(
        OrvCyclicPtr<MMConstantExpr>(new MMConstantExpr(MMValue(std::move(text)))));
}

OrvCyclicPtr<MMValueExpr> match(const std::string& pattern, const std::string& text) {
    return OrvCyclicPtr<MMValueExpr>(
        OrvCyclicPtr<MMRegExpMatchExpr>(new MMRegExpMatchExpr(constant(pattern), constant(text))));
}

OrvCyclicPtr<MMValueExpr> find(const std::string& pattern, const std::string& text) {
    return OrvCyclicPtr<MMValueExpr>(
        OrvCyclicPtr<MMRegExpFindExpr>(new MMRegExpFindExpr(constant(pattern), constant(text))));
}

OrvCyclicPtr<MMValueExpr> replaceAll(const std::string& pattern, const std::string& text,
                                     const std::string& replacement) {
    const OrvCyclicPtr<MMRegExpReplaceExpr> expression(
        new MMRegExpReplaceExpr(constant(pattern), constant(text), constant(replacement)));
    expression->replaceAll(true);
    return OrvCyclicPtr<MMValueExpr>(expression);
}

// A text of a and b without order, for which the engine finds no use of what it has seen.
std::string disorder(std::size_t size) {
    std::string text;
    unsigned random = 12345;
    while (text.size() < size) {
        random = random * 1103515245U + 12345U;
        text.push_back(((random >> 16U) & 1U) != 0 ? 'a' : 'b');
    }
    return text;
}

// The kind of the error in which an evaluation ends, and its sentence; nothing where it has a
// value.
struct Ending {
    std::optional<Kind> kind;
    std::string sentence;
};

Ending evaluate(const OrvCyclicPtr<MMValueExpr>& expression, const MMEvaluationLimits& limits) {
    const StructModel model(nothing);
    MMEvaluationContext context(model, limits);
    context.begin();
    try {
        (void)expression->evaluate(context);
        return {};
    } catch (const MMEvaluationError& error) {
        return {error.getKind(), error.what()};
    }
}

MMEvaluationLimits within(std::uint64_t steps, milliseconds time = milliseconds(0)) {
    MMEvaluationLimits limits;
    limits.steps = steps;
    limits.time = time;
    return limits;
}

TEST(Patterns, SearchesThatMayTakeTooLongAreNotBegun) {
    const std::string text = disorder(1U << 20U);
    std::string alternatives = "x";
    for (char last = 'c'; last <= 'l'; ++last) {
        alternatives.append("|a(a|b){450}").push_back(last);
    }
    for (const auto& expression :
         {match("(a|b)*a(a|b){500}c", text), match("a(a|b){900}a(a|b){90}c", text),
          match(alternatives, text), find("a(a|b){900}c", text),
          find("((a|b)*)a(a|b){400}$|c", text), replaceAll("a(a|b){900}c", text, "\\1")}) {
        const std::clock_t start = std::clock();
        EXPECT_EQ(evaluate(expression, within(1'000'000)).kind, Kind::stepLimit);
        const Ending ending = evaluate(expression, within(1'000'000'000'000, milliseconds(1000)));
        EXPECT_EQ(ending.kind, Kind::timeLimit);
        EXPECT_EQ(ending.sentence, "A pattern may take longer than the time that is left.");
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
    }
}

TEST(Patterns, LongSearchesThatFitAreBegun) {
    const std::string text = disorder(1U << 20U);
    for (const auto& expression :
         {match("ab[ab]*c", text), find("\\p{Lu}+", text), find("(a|b)*a(a|b){9}$", text),
          replaceAll("ab+", text, "\\0c"), match(repeat("a", 20) + "c", text)}) {
        EXPECT_EQ(evaluate(expression, within(1'000'000'000)).kind, std::nullopt);
    }
    EXPECT_EQ(evaluate(match("^a$|x", text), within(50'000'000, milliseconds(2000))).kind,
              std::nullopt);
}

// So many steps, and those for compiling a pattern of that weight.
MMEvaluationLimits withinAfter(std::size_t weight, std::uint64_t steps) {
    return within(64 * weight + steps);
}

TEST(Patterns, ShortSearchesCountAStep) {
    const StructModel model(nothing);
    const OrvCyclicPtr<MMValueExpr> expression = match("^is[A-Z]", "isInEngine");
    MMEvaluationContext context(model, withinAfter(6, 1000));
    context.begin();
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(expression->evaluate(context).getBoolean());
    }
    EXPECT_THROW((void)expression->evaluate(context), MMEvaluationError);
}

TEST(Patterns, LongerSearchesCountTheWorst) {
    const OrvCyclicPtr<MMValueExpr> expression = match("a(a|b){20}c", disorder(40));
    const StructModel model(nothing);
    MMEvaluationContext context(model, withinAfter(1 + 5 * 20 + 1, 1000));
    context.begin();
    int count = 0;
    EXPECT_THROW(
        for (; count < 1000; ++count) { (void)expression->evaluate(context); }, MMEvaluationError);
    EXPECT_GT(count, 2);
    EXPECT_LT(count, 20);
}

TEST(Patterns, WhoCalledOffWaitsForNoSearchThatIsYetToBegin) {
    const std::atomic<bool> isCancelled{true};
    MMEvaluationLimits limits;
    limits.isCancelled = &isCancelled;
    const StructModel model(nothing);
    MMEvaluationContext context(model, limits);
    context.begin();
    EXPECT_THROW(context.checkForesight(1, milliseconds(100)), MMEvaluationError);
    context.checkForesight(1, milliseconds(10));
}

// A moment more or less of what counts by its time must not decide over an outcome.
TEST(Patterns, TimeCountsBeyondWhatIsFree) {
    const StructModel model(nothing);
    MMEvaluationContext context(model, within(1'000'000));
    for (int application = 0; application < 2; ++application) {
        context.begin();
        context.countTime(milliseconds(6));
        context.countTime(milliseconds(4));
        context.step(999'999);
        context.countTime(std::chrono::nanoseconds(7));
        EXPECT_THROW(context.countTime(milliseconds(1)), MMEvaluationError);
    }
}

TEST(Patterns, ReplacementsAreMeasuredBeforeTheyAreWritten) {
    const OrvCyclicPtr<MMValueExpr> expression =
        replaceAll("a*", repeat("a", 10'000), repeat("\\0", 100'000));
    MMEvaluationLimits limits;
    limits.textSize = 200'000;
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    EXPECT_EQ(evaluate(expression, limits).kind, Kind::textLimit);
    limits.textSize = std::size_t{1} << 31U;
    limits.steps = 100'000;
    EXPECT_EQ(evaluate(expression, limits).kind, Kind::stepLimit);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 200'000);
    // what is written of nothing takes time as well
    EXPECT_EQ(
        evaluate(replaceAll("(x)?", repeat("a", 10'000), repeat("\\1", 100'000)), within(1'000'000))
            .kind,
        Kind::stepLimit);
}

TEST(Patterns, SentencesQuoteTheBeginning) {
    const std::string begin = "The pattern \"" + repeat("(", 40) + "\"... is ";
    const auto sentence = [](const std::string& pattern) {
        return evaluate(match(pattern, "a"), within(1'000'000)).sentence;
    };
    EXPECT_EQ(sentence(repeat("(", 40)), "The pattern \"" + repeat("(", 40) + "\" is malformed.");
    EXPECT_EQ(sentence(repeat("(", 41)), begin + "malformed.");
    EXPECT_EQ(sentence(repeat("(", 1'000'000)), begin + "too long.");
}

TEST(Patterns, ManyConstantsStopAtTheirLimits) {
    for (const char* const pattern : {"\\pL{128}", "\\pL{32}"}) {
        OrvCyclicPtr<MMValueExpr> expression = match(pattern, "");
        for (int i = 0; i < 16; ++i) {
            expression = OrvCyclicPtr<MMValueExpr>(OrvCyclicPtr<MMBooleanExpr>(
                new MMBooleanExpr(expression, MM_OR, match(pattern, ""))));
        }
        EXPECT_EQ(evaluate(expression, within(1'000'000'000, milliseconds(20))).kind,
                  Kind::timeLimit);
        EXPECT_EQ(evaluate(expression, within(1'000'000)).kind, Kind::stepLimit);
    }
}

// The first application, which compiles the pattern, counts no more than one after it.
TEST(Patterns, ComputedOnesCountByTheirWeight) {
    for (const std::string& pattern :
         {repeat("a", 30'000), repeat("a{0,1000}", 2) + repeat("b{1000}", 20),
          repeat("\\pL", 100)}) {
        const OrvCyclicPtr<MMValueExpr> computed(OrvCyclicPtr<MMArithmeticExpr>(
            new MMArithmeticExpr(constant(pattern), MM_ADD, constant(""))));
        const OrvCyclicPtr<MMValueExpr> expression(
            OrvCyclicPtr<MMRegExpMatchExpr>(new MMRegExpMatchExpr(computed, constant(""))));
        const MMEvaluationLimits tooLow = withinAfter(25'000, 0);
        EXPECT_EQ(evaluate(expression, tooLow).kind, Kind::stepLimit);
        EXPECT_EQ(evaluate(expression, withinAfter(RWCRegexp::heaviest, 20'000)).kind,
                  std::nullopt);
        EXPECT_EQ(evaluate(expression, tooLow).kind, Kind::stepLimit);
    }
}

}  // namespace
