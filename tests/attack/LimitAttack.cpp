// Expressions that would take hours, or all memory, stop at the limits that the host set.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "fliodram/MMAttrExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMIfExpr.h"
#include "fliodram/MMRegExpExpr.h"
#include "fliodram/MMTextExpr.h"
#include "fliodram/StructModel.h"

namespace {

constexpr std::size_t objectCount = 300;

// How long an evaluation may take that has a limit of 20 ms: what is promised with ATTACK_ALL=1, in
// a release build on a machine that does nothing else; elsewhere as long as shows that it ends.
std::chrono::milliseconds longestTime() {
    return std::chrono::milliseconds(std::getenv("ATTACK_ALL") != nullptr ? 120 : 2000);
}

// Objects of the class N, each with links to twenty others, all of them on cycles.
std::vector<Thing> makeThings() {
    const std::string kind = "N";
    std::vector<Thing> things(objectCount);
    for (std::size_t i = 0; i < objectCount; ++i) {
        things[i].kind = kind;
        things[i].id.assign(1, 'n').append(std::to_string(i));
        things[i].attributes["name"] =
            std::string("name").append(std::to_string(i * 7919 % objectCount));
        for (std::size_t link = 1; link <= 20; ++link) {
            things[i].associations["a"].push_back(things[(i + link * link) % objectCount].handle());
        }
    }
    things.front().attributes["long"] = std::string(std::size_t{1} << 20U, 'x');
    return things;
}

// A text of 10 MB, in which `use` calls it t; doubled further it reaches any limit.
std::string withLongText(const std::string& piece, const std::string& use, int doublings = 20) {
    std::string text = "let t0 = \"" + piece + "\" in ";
    for (int i = 1; i <= doublings; ++i) {
        const std::string half = 't' + std::to_string(i - 1);
        text += "let t" + std::to_string(i) + " = " + half + " + " + half + " in ";
    }
    return text + "let t = t" + std::to_string(doublings) + " in " + use;
}

std::string nested(const std::string& begin, const std::string& inner, const std::string& end,
                   int times) {
    std::string text = inner;
    for (int i = 0; i < times; ++i) {
        text = begin + text + end;
    }
    return text;
}

std::string inParentheses(const char* function, const std::string& argument) {
    return std::string(function).append(" (").append(argument).append(")");
}

std::vector<std::string> hostileTexts() {
    const std::string all = "all \"N\"";
    const std::string closure = "size (current -> l:^[a] -> @l)";
    return {
        nested("for_all x in " + all + " => (", "$name <> \"\"", ")", 4),
        nested("there_exists x in " + all + " => (", "$name = \"\"", ")", 4),
        nested("size filter {", "$name = \"\"", "} over (" + all + ") = 0", 4) + " or true",
        nested("concat map {", "$name", "} over " + all, 4),
        nested("delim (\"-\", map {", "$name", "} over (" + all + "))", 4),
        inParentheses("size", nested("traverse {[a]} over ", all, "", 8)),
        inParentheses("size", inParentheses("unique", nested("traverse {[a]} over ", all, "", 8))),
        inParentheses("size", nested("traverse {[a]} over reverse ", all, "", 8)) + " > 0",
        nested("for_all x in " + all + " => ", "(" + closure + " > 0)", "", 3),
        inParentheses("size", nested("sort {size filter {", closure + " > 0",
                                     "} over (" + all + ")} over " + all, 1)),
        "size (sort {" + closure + "} & sortd {" + closure + "} over traverse {" + all + "} over " +
            all + ")",
        nested("for_all x in " + all + " => (", all + " = [a]", " or true)", 3),
        nested("for_all x in " + all + " => (", all + " < traverse {[a]} over " + all, " or true)",
               2),
        "size (this -> l:^[a]{size (current -> @l) >= 0} -> @l)",
        "size (this -> ([a]{" + closure + " > 0}; [a]{" + closure +
            " > 1}) -> l:^[a]{for_all x in " + all + " => (" + closure + " > 0)} -> @l)",
        withLongText("0123456789", "t", 40),
        withLongText("ab", "replace_all (`a`, replace_all (`b`, t, t), t)", 10),
        withLongText("aaaaaaaaaa", "replace_all (`a.*z|a`, t, \"b\")"),
        withLongText("aaaaaaaaaa", nested("for_all x in " + all + " => ",
                                          "not match (`(a|aa)*(a*)*b`, t)", "", 2)),
        nested("for_all x in " + all + " => ",
               "toupper (trim (comma map {$name} over " + all + ")) <> \"\"", "", 3),
        nested("for_all x in " + all + " => ", "(opSig x <> \"\")", "", 4),
        nested("for_all x in " + all + " => ",
               "not (\"1\" ~= (attribute (\"name\", x) + \"\\\\pL{49}\"))", "", 2),
    };
}

// One step that goes over many bytes, done for many objects.
std::vector<std::string> hostileUsesOfLongTexts() {
    const std::string all = "all \"N\"";
    std::vector<std::string> texts;
    for (const char* const use : {
             "(let y = t in y) <> \"\"",
             "string (let y = t in y) <> \"\"",
             "(t |=> \"b\") <> \"\"",
             "t = u",
             "t <= u",
             "(if t = u then t else u) >= (if t = u then u else t)",
             "size sort {t} over [a] > 0",
             "trim t <> \"\"",
             "toupper t <> \"\"",
             "(t + \"\" = \"\") = false",
             "attribute (t, x) = \"\"",
             "size all t = 0",
             "real (\"0.\" + t) = 0.0",
             "escape t <> \"\"",
         }) {
        texts.push_back(withLongText(
            "0000000000",
            "let u = t + \"\" in " + nested("for_all x in " + all + " => (", use, ")", 2)));
    }
    texts.push_back("let o = this in " + nested("for_all x in " + all + " => (",
                                                "attribute (\"long\", o) <> \"\"", ")", 2));
    return texts;
}

struct Limits {
    const char* name;
    MMEvaluationLimits limits;
};

// The time that this thread has spent, whatever else the machine does.
std::chrono::nanoseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// How long the evaluation takes until a limit stops it.
std::chrono::nanoseconds timeUntilStopped(const MMValueAbsExpr& expression,
                                          MMEvaluationContext& context, MMObject object,
                                          const std::string& row) {
    const std::chrono::nanoseconds start = processorTime();
    try {
        (void)expression.apply(context, object);
        ADD_FAILURE() << row << " is not hostile";
    } catch (const MMEvaluationError& error) {
        EXPECT_TRUE(error.isLimit()) << row << error.what();
    }
    return processorTime() - start;
}

TEST(Hostile, ExpressionsStopAtTheirLimits) {
    const std::vector<Thing> things = makeThings();
    const StructModel model(things);
    std::vector<Limits> rows(2);
    rows[0] = {"steps", {}};
    rows[0].limits.steps = 1'000'000;
    rows[1] = {"time", {}};
    rows[1].limits.time = std::chrono::milliseconds(20);
    std::vector<std::string> texts = hostileTexts();
    for (std::string& text : hostileUsesOfLongTexts()) {
        texts.push_back(std::move(text));
    }
    RecordingDialogs dialogs;
    const auto harmless = ExprParser::parseAssociatedAttribute(dialogs, "$name + \"!\"");
    for (const std::string& text : texts) {
        const auto expression = ExprParser::parseAssociatedAttribute(dialogs, text);
        ASSERT_TRUE(expression) << text << "\n" << dialogs.messages.back();
        for (const Limits& row : rows) {
            MMEvaluationContext context(model, row.limits);
            const MMObject object = things.front().handle();
            for (int round = 0; round < 2; ++round) {
                EXPECT_LT(timeUntilStopped(*expression, context, object, text).count(),
                          std::chrono::nanoseconds(longestTime()).count())
                    << row.name << ": " << text;
                EXPECT_EQ(harmless->apply(context, object).getText(), "name0!") << text;
            }
        }
    }
}

// The limit at which an application ends; nothing where it has a value.
std::optional<MMEvaluationError::Kind> limitOf(const MMValueAbsExpr& expression,
                                               MMEvaluationContext& context, MMObject object) {
    try {
        (void)expression.apply(context, object);
        return std::nullopt;
    } catch (const MMEvaluationError& error) {
        return error.getKind();
    }
}

/// An expression, and whether it reaches the limit on what is kept.
struct KeepingRow {
    bool isLimited;
    std::string text;
};

// Each ends at the limit, or has a value, in every application.
void expectLimited(std::size_t memory, const std::vector<KeepingRow>& rows, int applications) {
    const std::vector<Thing> things = makeThings();
    const StructModel model(things);
    MMEvaluationLimits limits;
    limits.memory = memory;
    MMEvaluationContext context(model, limits);
    RecordingDialogs dialogs;
    for (const KeepingRow& row : rows) {
        const auto expression = ExprParser::parseAssociatedAttribute(dialogs, row.text);
        ASSERT_TRUE(expression) << row.text << "\n" << dialogs.messages.back();
        for (int i = 0; i < applications; ++i) {
            const auto error = limitOf(*expression, context, things.front().handle());
            EXPECT_EQ(error == MMEvaluationError::Kind::memoryLimit, row.isLimited) << row.text;
            EXPECT_EQ(error.has_value(), row.isLimited) << row.text;
        }
    }
}

// With 64 MiB, a text of 10 MB that may be kept some times, and 90,000 objects.
TEST(Hostile, NothingKeepsMoreThanTheLimit) {
    const std::string all = "all \"N\"";
    const std::string pairs = "traverse {" + all + "} over " + all;
    std::string lets;
    for (int i = 0; i < 10; ++i) {
        const std::string name = 'u' + std::to_string(i);
        lets += "let " + name + " = t + \"\" in if " + name + " = \"\" then \"\" else ";
    }
    const std::vector<KeepingRow> rows = {
        {true, withLongText("0123456789", "string size sort {t + $name} over " + all)},
        {true, withLongText("0123456789", "string size sort {1} & sort {t + $name} over " + all)},
        {true, withLongText("0123456789", "let m = map {t} over " + all + " in concat m")},
        {true, withLongText("0123456789", lets + "t")},
        {true, "string size sort {1} over traverse {" + pairs + "} over [a]"},
        {true, withLongText("0123456789", "\"\" + " + nested("toupper (t + ", "t", ")", 10))},
        {true, withLongText("0123456789", "let u = t in " + nested("toupper (u + ", "u", ")", 10))},
        {true,
         withLongText("0123456789", nested("delim (\"\", map {t + ", "t", "} over [a])", 10))},
        {true, withLongText("0123456789", nested("string (toupper t <> ", "\"\"", ")", 10))},
        // what goes is given back
        {false, "string (for_all x in " + all + " => size sort {$name + \"" +
                    std::string(100000, 'x') + "\"} over [a] > 0)"},
        {false,
         withLongText("0123456789",
                      "string (for_all x in " + all + " => (let u = t + $name in u <> \"\"))", 15)},
        {false, "string (for_all x in " + all + " => (let c = " + pairs + " in size c > 0))"},
        {false, "string (for_all x in " + all + " => size reverse (" + pairs + ") > 0)"},
        {false, "string (for_all x in " + all + " => (let m = map {$long} over " + all +
                    " in concat m <> \"\"))"},
    };
    expectLimited(std::size_t{1} << 26U, rows, 1);
}

// With 64 KiB, of which the targets of the 300 objects of a path take 48,000 bytes where the model
// copies them for one step, and as much for each further one.
TEST(Hostile, DepthFirstPathsKeepTheTargetsThatAModelCopies) {
    const std::string all = "all \"N\"";
    const std::vector<KeepingRow> rows = {
        {false, "string size (this -> l:^_[a] -> @l)"},
        {true, "string size (this -> l:^_[a] -> ^_[a] -> @l)"},
        {true, "string size (this -> l:^_[a]{size (current -> m:^_[a] -> @m) > 0} -> @l)"},
        // what goes is given back, and what is left when a search has found
        {false, "string (for_all x in " + all + " => size (x -> l:^_[a] -> @l) > 0)"},
        {false,
         "string (for_all x in " + all + " => there_exists y in (x -> l:^_[a] -> @l) => y = this)"},
        {false, "string size (" + nested("", "this", " -> ^_[a]", 12) + ")"},
    };
    expectLimited(std::size_t{1} << 16U, rows, 2);
}

// Sets of 90,000 elements, of which sorting is most of what comparing takes, and texts of 10 MB.
TEST(Hostile, ComparingTakesSteps) {
    const std::vector<Thing> things = makeThings();
    const StructModel model(things);
    RecordingDialogs dialogs;
    for (const auto& [steps, text] : std::vector<std::pair<std::uint64_t, std::string>>{
             {300'000, "(traverse {all \"N\"} over all \"N\") = [a]"},
             {10'000'000, withLongText("0123456789", "for_all x in all \"N\" => t <= t")},
             {10'000'000, withLongText("0123456789",
                                       "string (for_all x in all \"N\" => "
                                       "(if t <= t then 1 else 2) > 0)")}}) {
        MMEvaluationLimits limits;
        limits.steps = steps;
        MMEvaluationContext context(model, limits);
        const auto expression = ExprParser::parseAssociatedAttribute(dialogs, text);
        ASSERT_TRUE(expression) << text;
        (void)timeUntilStopped(*expression, context, things.front().handle(), text);
    }
}

// All backslashes, of which each pair is a part of its own.
TEST(Hostile, LongReplacementsStopBetweenTheirParts) {
    const std::vector<Thing> things = makeThings();
    const StructModel model(things);
    MMEvaluationLimits limits;
    limits.time = std::chrono::milliseconds(20);
    MMEvaluationContext context(model, limits);
    const auto constant = [](std::string text) {
        return OrvCyclicPtr<MMConstantExpr>(new MMConstantExpr(MMValue(std::move(text))));
    };
    const OrvCyclicPtr<MMRegExpReplaceExpr> body(new MMRegExpReplaceExpr(
        constant("b"), constant("abc"), constant(std::string(std::size_t{60'000'000}, '\\'))));
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMValueAbsExpr> expression(new MMValueAbsExpr(variable, body));
    EXPECT_LT(
        timeUntilStopped(*expression, context, things.front().handle(), "replacement").count(),
        std::chrono::nanoseconds(longestTime()).count());
}

// What a host can build, although no text does.
template <class Conditional>
OrvCyclicPtr<Conditional> ownBranch() {
    const OrvCyclicPtr<Conditional> conditional(new Conditional);
    conditional->testExpr(OrvCyclicPtr<MMConstantExpr>(new MMConstantExpr(MMValue(true))));
    conditional->thenExpr(conditional);
    conditional->elseExpr(conditional);
    return conditional;
}

TEST(Hostile, ConditionalsThatAreTheirOwnBranchesStop) {
    const std::vector<Thing> things = makeThings();
    const StructModel model(things);
    MMEvaluationContext context(model);
    const OrvCyclicPtr<MMConstantExpr> comma(new MMConstantExpr(", "));
    const std::pair<const char*, OrvCyclicPtr<MMValueExpr>> rows[] = {
        {"value", ownBranch<MMIfValueExpr>()},
        {"object", OrvCyclicPtr<MMUidExpr>(new MMUidExpr(ownBranch<MMIfObjectExpr>()))},
        {"objects",
         OrvCyclicPtr<MMCountExpr>(new MMCountExpr(ownBranch<MMIfObjectCollectionExpr>()))},
        {"strings", OrvCyclicPtr<MMDelimiterExpr>(
                        new MMDelimiterExpr(comma, ownBranch<MMIfStringCollectionExpr>()))},
    };
    MMEvaluationLimits limits;
    limits.time = std::chrono::milliseconds(20);
    context.setLimits(limits);
    for (const auto& [name, body] : rows) {
        const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
        const OrvCyclicPtr<MMValueAbsExpr> expression(new MMValueAbsExpr(variable, body));
        EXPECT_LT(timeUntilStopped(*expression, context, things.front().handle(), name).count(),
                  std::chrono::nanoseconds(longestTime()).count())
            << name;
    }
}

}  // namespace
