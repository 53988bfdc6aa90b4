// Every single allocation of compilations, evaluations and printing fails, once and from then on:
// without the memory pool, with it while it is empty, and with what it kept of the same work.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "codegen/SourceMap.h"
#include "evaluation/SmallModel.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"
#include "foundation/OrvMemoryPool.h"
#include "support/AllocationCounter.h"
#include "support/Corpus.h"
#include "support/SilentErrors.h"

namespace {

/// Dialogs that note the messages of a first compilation, and hold those of the next ones against
/// them without allocating.
class ComparingDialogs : public ExprParserDialogs {
public:
    /// Ends the noting, and begins the next compilation.
    void beginNext() {
        isNoting_ = false;
        shown_ = 0;
        areRight_ = true;
    }
    /// Whether what was shown are the first messages, or all, of the first compilation.
    bool areRight() const { return areRight_; }
    bool areAll() const { return areRight_ && shown_ == messages_.size(); }

private:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int line, int column, const std::string& /*source*/,
                     const std::string& message, MessageSeverity /*severity*/,
                     bool /*flag*/) override {
        if (isNoting_) {
            messages_.push_back({line, column, message});
            return;
        }
        areRight_ = areRight_ && shown_ < messages_.size() && messages_[shown_].line == line &&
                    messages_[shown_].column == column && messages_[shown_].text == message;
        ++shown_;
    }

    struct Message {
        int line;
        int column;
        std::string text;
    };
    std::vector<Message> messages_;
    std::size_t shown_ = 0;
    bool isNoting_ = true;
    bool areRight_ = true;
};

/// What came of an action: its result, "memory" where std::bad_alloc left it.
struct Outcome {
    std::string result = "memory";
    bool hasFailed = false;  // an allocation
};

template <class Action>
Outcome runWhileFailing(long number, bool forGood, const Action& action) {
    Outcome outcome;
    const FailingAllocation failing(number, forGood);
    try {
        outcome.result = action();
    } catch (const std::bad_alloc&) {
        outcome.result = "memory";  // short enough to need none
    }
    outcome.hasFailed = failing.hasFailed();
    return outcome;
}

/// How the memory pool takes part.
struct Pool {
    const char* name;
    std::size_t limit;        ///< what it may keep, in bytes
    bool isWarm;              ///< whether it has kept what the same work gave back
    std::size_t longestText;  ///< whose allocations fail with it
};

std::ostream& operator<<(std::ostream& stream, const Pool& pool) { return stream << pool.name; }

constexpr std::size_t usualLimit = std::size_t{8} * 1024 * 1024;
constexpr Pool pools[] = {{"WithoutPool", 0, false, 100},
                          {"WithEmptyPool", usualLimit, false, 60},
                          {"WithWarmPool", usualLimit, true, 40}};

using Attempt = std::function<Outcome(long number, bool forGood)>;
using Judge = std::function<bool(const Outcome&)>;
using Compile = bool (*)(ExprParserDialogs&, const std::string&);

/// Puts one of the pools in force for a test, and none after it.
class FailingAllocations : public testing::TestWithParam<Pool> {
protected:
    FailingAllocations() { OrvMemoryPool::setLimit(GetParam().limit); }
    ~FailingAllocations() override { OrvMemoryPool::setLimit(0); }

    std::vector<std::string> chosenTexts() const;
    void failEveryAllocation(const std::string& text, const Attempt& attempt,
                             const Judge& isPermitted) const;
    void failCompilation(Compile compile, const std::string& text) const;
    template <class Parse>
    void failEvaluations(const Parse& parse, const SmallModel& model,
                         const std::string& text) const;

private:
    /// Gives back what the pool keeps, and counts what is alive without it.
    static std::ptrdiff_t liveOutsideOfPool() {
        OrvMemoryPool::setLimit(0);
        OrvMemoryPool::setLimit(GetParam().limit);
        return AllocationCounter::live();
    }
};

// Makes the attempt with each allocation failing in turn, until none is left that could. What comes
// of it is permitted, and nothing is left behind.
void FailingAllocations::failEveryAllocation(const std::string& text, const Attempt& attempt,
                                             const Judge& isPermitted) const {
    constexpr long never = std::numeric_limits<long>::max();
    // What a thread keeps its first piece in is there from now on.
    OrvMemoryPool::deallocate(OrvMemoryPool::allocate(1), 1);
    for (const bool forGood : {false, true}) {
        bool hasFailed = true;
        for (long number = 0; hasFailed; ++number) {
            const std::ptrdiff_t before = liveOutsideOfPool();
            if (GetParam().isWarm) {
                ASSERT_TRUE(isPermitted(attempt(never, false))) << text;
            }
            {
                const Outcome outcome = attempt(number, forGood);
                ASSERT_TRUE(isPermitted(outcome))
                    << text << " gives " << outcome.result << " at " << number;
                hasFailed = outcome.hasFailed;
            }
            ASSERT_EQ(liveOutsideOfPool(), before) << text << " at " << number;
        }
    }
}

// What everything but a compilation comes to: the whole result, or std::bad_alloc.
Judge wholeOrMemory(const std::string& whole) {
    return [&whole](const Outcome& outcome) {
        return outcome.result == whole || (outcome.hasFailed && outcome.result == "memory");
    };
}

// The texts of the corpus, of all its groups, but for the longest, whose allocations are many.
std::vector<std::string> FailingAllocations::chosenTexts() const {
    std::vector<std::string> texts;
    for (const CorpusText& row : corpus()) {
        if (row.text.size() <= GetParam().longestText) {
            texts.push_back(row.text);
        }
    }
    return texts;
}

template <auto parse>
bool compiles(ExprParserDialogs& dialogs, const std::string& text) {
    return static_cast<bool>(parse(dialogs, text));
}
template <auto parse>
bool compilesMapped(ExprParserDialogs& dialogs, const std::string& text) {
    SourceMap map;
    return static_cast<bool>(parse(dialogs, text, map));
}

constexpr Compile entryPoints[] = {
    compiles<ExprParser::parseCondition>,
    compiles<ExprParser::parseAssociatedAttribute>,
    compiles<ExprParser::parseComplexAssociation>,
    compilesMapped<ExprParser::parseMappedCondition>,
    compilesMapped<ExprParser::parseMappedAssociatedAttribute>,
    compilesMapped<ExprParser::parseMappedComplexAssociation>,
};

// A compilation whose memory runs out has an empty result, after the first of its messages.
// std::bad_alloc leaves it where all is done but the abstraction that is returned.
void FailingAllocations::failCompilation(Compile compile, const std::string& text) const {
    ComparingDialogs dialogs;
    const bool isCorrect = compile(dialogs, text);
    const std::string whole = isCorrect ? "compiled" : "empty";
    failEveryAllocation(
        text,
        [&](long number, bool forGood) {
            dialogs.beginNext();
            return runWhileFailing(number, forGood, [&] {
                return std::string(compile(dialogs, text) ? "compiled" : "empty");
            });
        },
        [&](const Outcome& outcome) {
            const bool isMemoryPermitted = isCorrect && outcome.hasFailed;
            return outcome.result == "empty" && outcome.hasFailed ? dialogs.areRight()
                   : outcome.result == "memory" ? isMemoryPermitted && dialogs.areAll()
                                                : outcome.result == whole && dialogs.areAll();
        });
}

TEST_P(FailingAllocations, OfCompilations) {
    const SilentErrors silent;
    for (const std::string& text : chosenTexts()) {
        for (const Compile compile : entryPoints) {
            failCompilation(compile, text);
        }
    }
}

// The first compilation of a process makes what all share; where that fails, a later one makes it.
TEST_P(FailingAllocations, OfTheFirstCompilation) {
    const std::string text = "size (all \"A\") > 1 and $b ~= \"c\"";
    int status = -1;
    for (long number = 0; status != 0; ++number) {
        const pid_t child = fork();
        if (child == 0) {
            ComparingDialogs dialogs;
            const auto compile = [&] {
                return std::string(ExprParser::parseCondition(dialogs, text) ? "yes" : "no");
            };
            const bool hasFailed = runWhileFailing(number, false, compile).hasFailed;
            _exit(compile() == "no" ? 2 : hasFailed ? 1 : 0);
        }
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << number;
    }
}

std::string shown(const MMValue& value) { return value.asString().data(); }
std::string shown(const std::vector<MMObject>& objects) { return std::to_string(objects.size()); }

template <class Expression>
std::string evaluate(const Expression& expression, const SmallModel& model) {
    MMEvaluationLimits limits;
    limits.steps = 300;
    MMEvaluationContext context(model.view(), limits);
    try {
        return shown(expression->apply(context, model.things().front().handle()));
    } catch (const MMEvaluationError& error) {
        return error.what();
    }
}

// An evaluation whose memory runs out throws std::bad_alloc, be it the first of an expression,
// which fills its caches, or a later one. The next one is right.
template <class Parse>
void FailingAllocations::failEvaluations(const Parse& parse, const SmallModel& model,
                                         const std::string& text) const {
    ComparingDialogs dialogs;
    const auto sample = parse(dialogs, text);
    if (!sample) {
        return;
    }
    const std::string whole = evaluate(sample, model);
    const auto attack = [&](const auto& expression, long number, bool forGood) {
        const auto run = [&] { return evaluate(expression, model); };
        Outcome outcome = runWhileFailing(number, forGood, run);
        EXPECT_EQ(run(), whole) << text << " after " << number;
        return outcome;
    };
    const auto attackFirst = [&](long number, bool forGood) {
        dialogs.beginNext();
        return attack(parse(dialogs, text), number, forGood);
    };
    const auto attackLater = [&](long number, bool forGood) {
        return attack(sample, number, forGood);
    };
    failEveryAllocation(text, attackFirst, wholeOrMemory(whole));
    failEveryAllocation(text, attackLater, wholeOrMemory(whole));
}

TEST_P(FailingAllocations, OfEvaluations) {
    const SilentErrors silent;
    const SmallModel model;
    for (const std::string& text : chosenTexts()) {
        failEvaluations(ExprParser::parseCondition, model, text);
        failEvaluations(ExprParser::parseAssociatedAttribute, model, text);
        failEvaluations(ExprParser::parseComplexAssociation, model, text);
    }
}

TEST_P(FailingAllocations, OfPrinting) {
    const SilentErrors silent;
    for (const std::string& text : chosenTexts()) {
        ComparingDialogs dialogs;
        const auto expression = ExprParser::parseAssociatedAttribute(dialogs, text);
        if (expression) {
            const auto print = [&expression] { return printedTarget(*expression); };
            const std::string whole = print();
            failEveryAllocation(
                text,
                [&](long number, bool forGood) { return runWhileFailing(number, forGood, print); },
                wholeOrMemory(whole));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailingAllocations, testing::ValuesIn(pools),
                         [](const auto& pool) { return pool.param.name; });

}  // namespace
