// Every single allocation of compilations and evaluations fails, once and from then on.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "codegen/SourceMap.h"
#include "evaluation/SmallModel.h"
#include "fliodram/MMEvaluationError.h"
#include "support/AllocationCounter.h"
#include "support/Corpus.h"

namespace {

/// Dialogs that allocate nothing.
class SilentDialogs : public ExprParserDialogs {
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {}
};

/// What an action came to: "yes" or "no", "memory" where std::bad_alloc came out of it.
using Action = std::function<std::string()>;

// Runs the action with every allocation of it failing in turn. Nothing but std::bad_alloc, or an
// outcome that the action may have then, comes of it, and nothing is left behind.
void failEveryAllocation(const Action& action, const std::vector<std::string>& permitted,
                         const std::string& text) {
    const std::string expected = action();
    for (const bool forGood : {false, true}) {
        bool isDone = false;
        for (long number = 0; !isDone; ++number) {
            const std::ptrdiff_t before = AllocationCounter::live();
            {
                std::string outcome = "memory";
                const FailingAllocation failing(number, forGood);
                try {
                    outcome = action();
                } catch (const std::bad_alloc&) {
                }
                isDone = !failing.hasFailed();
                const bool isPermitted =
                    outcome == expected ||
                    std::find(permitted.begin(), permitted.end(), outcome) != permitted.end();
                ASSERT_TRUE(isPermitted) << text << " gives " << outcome << " at " << number;
            }
            ASSERT_EQ(AllocationCounter::live(), before) << text << " at " << number;
        }
    }
    EXPECT_EQ(action(), expected) << text;
}

std::vector<std::string> shortTexts(std::size_t count) {
    std::vector<std::string> texts;
    for (const CorpusText& row : corpus()) {
        texts.push_back(row.text);
    }
    std::stable_sort(texts.begin(), texts.end(),
                     [](const auto& a, const auto& b) { return a.size() < b.size(); });
    texts.resize(std::min(count, texts.size()));
    return texts;
}

std::string compileAll(const std::string& text) {
    SilentDialogs dialogs;
    std::string outcome;  // short enough to be held without an allocation
    outcome += ExprParser::parseCondition(dialogs, text) ? 'c' : '-';
    outcome += ExprParser::parseAssociatedAttribute(dialogs, text) ? 'v' : '-';
    outcome += ExprParser::parseComplexAssociation(dialogs, text) ? 'o' : '-';
    SourceMap map;
    outcome += ExprParser::parseMappedAssociatedAttribute(dialogs, text, map) ? 'm' : '-';
    return outcome;
}

// A compilation whose memory runs out has an empty result, and the next one is right.
TEST(FailingAllocation, OfCompilations) {
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);
    for (const std::string& text : shortTexts(300)) {
        const std::string whole = compileAll(text);
        std::vector<std::string> permitted = {"memory"};
        for (std::size_t i = 0; i < whole.size(); ++i) {
            permitted.push_back(whole);
            permitted.back()[i] = '-';
        }
        permitted.emplace_back("----");
        permitted.push_back(whole.substr(0, 1) + "---");
        permitted.push_back(whole.substr(0, 2) + "--");
        failEveryAllocation([&] { return compileAll(text); }, permitted, text);
    }
    std::cerr.rdbuf(buffer);
}

// The first compilation of a process makes what all share; where that fails, a later one makes it.
TEST(FailingAllocation, OfTheFirstCompilation) {
    const std::string text = "size (all \"A\") > 1 and $b ~= \"c\"";
    int status = -1;
    for (long number = 0; status != 0; ++number) {
        const pid_t child = fork();
        if (child == 0) {
            bool hasFailed = false;
            SilentDialogs dialogs;
            try {
                const FailingAllocation failing(number, false);
                (void)ExprParser::parseCondition(dialogs, text);
                hasFailed = failing.hasFailed();
            } catch (const std::bad_alloc&) {
                hasFailed = true;
            }
            const bool isRight = static_cast<bool>(ExprParser::parseCondition(dialogs, text));
            _exit(!isRight ? 2 : hasFailed ? 1 : 0);
        }
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << number;
    }
}

std::string shown(const MMValue& value) { return value.asString().data(); }
std::string shown(const std::vector<MMObject>& objects) { return std::to_string(objects.size()); }

// Applies the expression, if there is one, with every allocation failing in turn.
template <class Expression>
void failEvaluations(const OrvCountedPtr<Expression>& expression, const SmallModel& model,
                     const std::string& text) {
    MMEvaluationLimits limits;
    limits.steps = 300;
    MMEvaluationContext context(model.view(), limits);
    const auto evaluate = [&]() -> std::string {
        try {
            return shown(expression->apply(context, model.things().front().handle()));
        } catch (const MMEvaluationError& error) {
            return error.what();
        }
    };
    if (expression) {
        failEveryAllocation(evaluate, {"memory"}, text);
    }
}

// An evaluation whose memory runs out throws std::bad_alloc, and the next one is right.
TEST(FailingAllocation, OfEvaluations) {
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);
    const SmallModel model;
    for (const std::string& text : shortTexts(300)) {
        SilentDialogs dialogs;
        failEvaluations(ExprParser::parseAssociatedAttribute(dialogs, text), model, text);
        failEvaluations(ExprParser::parseComplexAssociation(dialogs, text), model, text);
    }
    std::cerr.rdbuf(buffer);
}

}  // namespace
