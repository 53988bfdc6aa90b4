// Every single call of malloc, calloc and realloc fails, once and from then on: those of the C
// library and of what it loads as well. Each time in a process of its own, since these keep what
// they once got.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>
#include <thread>

#include "api/ExprParser.h"
#include "api/ExprParserDefaultWindowsDialogs.h"
#include "fliodram/MMEvaluationError.h"
#include "repository/MemoryUses.h"
#include "repository/ModelReader.h"
#include "support/FailureCountdown.h"
#include "support/OrvStack.h"

extern "C" {
void* __libc_malloc(std::size_t size);                     // NOLINT: names of the C library
void* __libc_calloc(std::size_t count, std::size_t size);  // NOLINT
void* __libc_realloc(void* memory, std::size_t size);      // NOLINT
}

namespace {

thread_local FailureCountdown countdown;

// What the system answers when it is asked for a thread's stack; 0 for the truth.
int answerAboutStacks = 0;

enum Verdict { allIsRight, allIsRightAfterFailure, isWrong, isWrongAfterwards };

// The whole result or std::bad_alloc with a failing allocation, the whole result without.
Verdict judge(const MemoryUse::Run& run, long number, bool forGood, const std::string& whole) {
    bool isRight = false;
    countdown.failsForGood = forGood;
    countdown.untilFailure = number;
    try {
        isRight = run() == whole;
    } catch (const std::bad_alloc&) {
        isRight = countdown.hasFailed;
    } catch (const std::exception&) {
        isRight = false;
    }
    countdown.untilFailure = -1;
    return !isRight              ? isWrong
           : run() != whole      ? isWrongAfterwards
           : countdown.hasFailed ? allIsRightAfterFailure
                                 : allIsRight;
}

void failEveryAllocation(const MemoryUse& use, const std::string& whole) {
    for (const bool forGood : {false, true}) {
        int status = -1;
        for (long number = 0; status != allIsRight; ++number) {
            const pid_t child = fork();
            if (child == 0) {
                _exit(judge(use.prepare(), number, forGood, whole));
            }
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status)) << use.name << " at " << number << " ends the process";
            status = WEXITSTATUS(status);
            ASSERT_LT(status, isWrong) << use.name << " at " << number;
        }
    }
}

// Compiled at the first use of a process; an empty result counts as short memory.
std::string compile() {
    ExprParserDefaultWindowsDialogs dialogs;
    if (!ExprParser::parseCondition(dialogs, "size (all \"A\") > 1 or $b ~= \"c\"")) {
        throw std::bad_alloc();
    }
    return "compiled";
}

const char* const cyclicModel =
    R"({"objects":[{"id":"a","class":"A","associations":{"a":["a"]}}]})";

// What an expression that evaluates itself without end comes to.
std::string evaluateWithoutEnd() {
    const std::unique_ptr<RepositoryModel> model = readModelText(cyclicModel, "doc");
    ExprParserDefaultWindowsDialogs dialogs;
    const auto endless =
        ExprParser::parseAssociatedAttribute(dialogs, "size (l:[a]{size @l >= 0} -> @l)");
    MMEvaluationContext context(*model);
    try {
        return std::string(endless->apply(context, model->root(0)).asString().view());
    } catch (const MMEvaluationError& error) {
        return error.what();
    }
}

TEST(FailingMalloc, OfModels) {
    for (const MemoryUse& use : memoryUses()) {
        failEveryAllocation(use, use.prepare()());
    }
}

TEST(FailingMalloc, OfTheFirstCompilation) {
    failEveryAllocation({"compilation", [] { return compile; }}, "compiled");
}

/// How a thread fares that asks for its bounds the first time.
struct FirstQuestion {
    long untilFailure;  // negative for none
    int firstAnswer;    // of the system; 0 for the truth
    int laterAnswer;
};

constexpr FirstQuestion firstQuestions[] = {
    {0, 0, 0},       {1, 0, 0},          {2, 0, 0},       {3, 0, 0},
    {-1, ENOMEM, 0}, {-1, EPERM, EPERM}, {-1, ENOENT, 0}, {-1, ENOENT, ENOENT}};

// Whatever failed when a thread first asked for its bounds, an endless evaluation is stopped.
TEST(FailingMalloc, LeavesTheGuardOfTheStack) {
    for (const FirstQuestion& question : firstQuestions) {
        std::string outcome;
        std::thread([&] {
            countdown.untilFailure = question.untilFailure;
            answerAboutStacks = question.firstAnswer;
            try {
                EXPECT_GT(OrvStack::limit(), 0U);
            } catch (const std::bad_alloc&) {
                EXPECT_NE(question.firstAnswer, EPERM);
            }
            countdown.untilFailure = -1;
            answerAboutStacks = question.laterAnswer;
            outcome = evaluateWithoutEnd();
        }).join();
        answerAboutStacks = 0;
        EXPECT_EQ(outcome, "The evaluation is nested too deeply.")
            << question.untilFailure << ", " << question.firstAnswer;
    }
}

}  // namespace

// They fail without a reason in errno, which the standard does not ask for.
extern "C" void* malloc(std::size_t size) {
    return countdown.take() ? nullptr : __libc_malloc(size);
}
extern "C" void* calloc(std::size_t count, std::size_t size) {
    return countdown.take() ? nullptr : __libc_calloc(count, size);
}
extern "C" void* realloc(void* memory, std::size_t size) {
    return countdown.take() ? nullptr : __libc_realloc(memory, size);
}
extern "C" int pthread_getattr_np(pthread_t thread, pthread_attr_t* attributes) {
    static const auto ask =
        reinterpret_cast<decltype(&pthread_getattr_np)>(dlsym(RTLD_NEXT, "pthread_getattr_np"));
    return answerAboutStacks != 0 ? answerAboutStacks : ask(thread, attributes);
}
