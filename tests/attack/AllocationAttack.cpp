// Every single allocation of compilations, evaluations and printing fails, once and from then on.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "codegen/SourceMap.h"
#include "evaluation/SmallModel.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"
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

using Attempt = std::function<Outcome(long number, bool forGood)>;
using Judge = std::function<bool(const Outcome&)>;

// Makes the attempt with each allocation failing in turn, until none is left that could. What comes
// of it is permitted, and nothing is left behind.
void failEveryAllocation(const std::string& text, const Attempt& attempt,
                         const Judge& isPermitted) {
    for (const bool forGood : {false, true}) {
        bool hasFailed = true;
        for (long number = 0; hasFailed; ++number) {
            const std::ptrdiff_t before = AllocationCounter::live();
            {
                const Outcome outcome = attempt(number, forGood);
                ASSERT_TRUE(isPermitted(outcome))
                    << text << " gives " << outcome.result << " at " << number;
                hasFailed = outcome.hasFailed;
            }
            ASSERT_EQ(AllocationCounter::live(), before) << text << " at " << number;
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
std::vector<std::string> chosenTexts() {
    constexpr std::size_t longest = 100;
    std::vector<std::string> texts;
    for (const CorpusText& row : corpus()) {
        if (row.text.size() <= longest) {
            texts.push_back(row.text);
        }
    }
    return texts;
}

using Compile = bool (*)(ExprParserDialogs&, const std::string&);

const Compile entryPoints[] = {
    [](ExprParserDialogs& dialogs, const std::string& text) {
        return static_cast<bool>(ExprParser::parseCondition(dialogs, text));
    },
    [](ExprParserDialogs& dialogs, const std::string& text) {
        return static_cast<bool>(ExprParser::parseAssociatedAttribute(dialogs, text));
    },
    [](ExprParserDialogs& dialogs, const std::string& text) {
        return static_cast<bool>(ExprParser::parseComplexAssociation(dialogs, text));
    },
    [](ExprParserDialogs& dialogs, const std::string& text) {
        SourceMap map;
        return static_cast<bool>(ExprParser::parseMappedAssociatedAttribute(dialogs, text, map));
    },
};

// A compilation whose memory runs out has an empty result, after the first of its messages.
// std::bad_alloc leaves it where all is done but the abstraction that is returned.
void failCompilation(Compile compile, const std::string& text) {
    ComparingDialogs dialogs;
    const bool compiles = compile(dialogs, text);
    const std::string whole = compiles ? "compiled" : "empty";
    failEveryAllocation(
        text,
        [&](long number, bool forGood) {
            dialogs.beginNext();
            return runWhileFailing(number, forGood, [&] {
                return std::string(compile(dialogs, text) ? "compiled" : "empty");
            });
        },
        [&](const Outcome& outcome) {
            const bool isMemoryPermitted = compiles && outcome.hasFailed;
            return outcome.result == "empty" && outcome.hasFailed ? dialogs.areRight()
                   : outcome.result == "memory" ? isMemoryPermitted && dialogs.areAll()
                                                : outcome.result == whole && dialogs.areAll();
        });
}

TEST(FailingAllocation, OfCompilations) {
    const SilentErrors silent;
    for (const std::string& text : chosenTexts()) {
        for (const Compile compile : entryPoints) {
            failCompilation(compile, text);
        }
    }
}

// The first compilation of a process makes what all share; where that fails, a later one makes it.
TEST(FailingAllocation, OfTheFirstCompilation) {
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
void failEvaluations(const Parse& parse, const SmallModel& model, const std::string& text) {
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

TEST(FailingAllocation, OfEvaluations) {
    const SilentErrors silent;
    const SmallModel model;
    for (const std::string& text : chosenTexts()) {
        failEvaluations(ExprParser::parseAssociatedAttribute, model, text);
        failEvaluations(ExprParser::parseComplexAssociation, model, text);
    }
}

TEST(FailingAllocation, OfPrinting) {
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

}  // namespace
