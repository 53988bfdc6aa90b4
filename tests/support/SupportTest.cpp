// Exceptions, the exception log, the message box and the stack guard.
#include <gtest/gtest.h>
#include <ucontext.h>

#include <cstdint>
#include <sstream>
#include <thread>
#include <vector>

#include "support/OrvAssertion.h"
#include "support/OrvLogBase.h"
#include "support/OrvMessageBox.h"
#include "support/OrvStack.h"
#include "support/ParseException.h"

namespace {

TEST(Exceptions, CarryWhatTheyWereGiven) {
    const ParseException parse("bad", 3, 7);
    EXPECT_STREQ(parse.what(), "bad");
    EXPECT_EQ(parse.getLine(), 3);
    EXPECT_EQ(parse.getColumn(), 7);
    const OrvAssertion assertion("false", "File", 68, "broken");
    EXPECT_STREQ(assertion.what(), "broken");
    EXPECT_EQ(assertion.getCondition(), "false");
    EXPECT_EQ(assertion.getFile(), "File");
    EXPECT_EQ(assertion.getLine(), 68);
}

TEST(ExceptionLog, WritesTheCategoriesThatAreEnabled) {
    OrvLogBase& log = OrvException::getLog();
    std::ostringstream lines;
    log.setStream(lines);
    EXPECT_THROW(throwLogged(OrvException("unseen")), OrvException);
    log.enable("Throw");
    EXPECT_TRUE(log.isEnabled("Throw"));
    EXPECT_FALSE(log.isEnabled("Catch"));
    EXPECT_THROW(throwLogged(OrvException("one")), OrvException);
    EXPECT_THROW(throwLogged(ParseException("two", 1, 1)), ParseException);
    log.writeLine("Catch", {"unseen"});
    log.disable("Throw");
    EXPECT_THROW(throwLogged(OrvException("unseen")), OrvException);
    log.setStream(std::cerr);
    EXPECT_EQ(lines.str(), "Exception throw: one\nException throw: two\n");
}

TEST(ExceptionLog, LinesOfThreadsNeverMix) {
    OrvLogBase log;
    std::ostringstream lines;
    log.setStream(lines);
    log.enable("X");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&log] {
            for (int n = 0; n < 200; ++n) {
                log.writeLine("X", {"abc", "def"});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::string expected;
    for (int n = 0; n < 800; ++n) {
        expected += "abcdef\n";
    }
    EXPECT_EQ(lines.str(), expected);
}

TEST(MessageBox, WritesCaptionAndTextToStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_NE(OrvMessageBox::show("text", "Caption", OrvMessageBox::iconError),
              OrvMessageBox::resultYes);
    EXPECT_EQ(OrvMessageBox::show("question", "Input", OrvMessageBox::buttonsYesNo),
              OrvMessageBox::resultNo);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Caption: text\nInput: question\n");
}

// Recurses until the guard says stop; returns the levels that there was room for.
int descend(int level) {
    volatile char frame[1024];
    frame[level % 1024] = 1;
    if (!OrvStack::hasRoom()) {
        return level;
    }
    const int reached = descend(level + 1);
    return frame[level % 1024] == 1 ? reached : 0;
}

/// A recursion on a stack of the host's, below the limit that it asked for where it began.
struct Fiber {
    int descend(int level) {
        volatile char frame[1024];
        frame[level % 1024] = 1;
        if (OrvStack::isBelow(limit) || level == 5000) {
            lowest = reinterpret_cast<std::uintptr_t>(&frame);
            return level;
        }
        const int reached = descend(level + 1);
        return frame[level % 1024] == 1 ? reached : 0;
    }

    ucontext_t caller{};
    ucontext_t own{};
    std::uintptr_t limit = 0;
    std::uintptr_t lowest = 0;
    int levels = 0;
};
Fiber fiber;

void runFiber() {
    fiber.limit = OrvStack::limit();
    fiber.levels = fiber.descend(0);
}

TEST(Stack, GuardStopsRecursionOnAStackOfTheHosts) {
    std::vector<char> stack(std::size_t{512} * 1024);
    ASSERT_EQ(getcontext(&fiber.own), 0);
    fiber.own.uc_stack.ss_sp = stack.data();
    fiber.own.uc_stack.ss_size = stack.size();
    fiber.own.uc_link = &fiber.caller;
    makecontext(&fiber.own, &runFiber, 0);
    ASSERT_EQ(swapcontext(&fiber.caller, &fiber.own), 0);
    EXPECT_GT(fiber.levels, 20);
    EXPECT_GT(fiber.lowest, reinterpret_cast<std::uintptr_t>(stack.data()) + stack.size() / 4);
    EXPECT_LT(fiber.lowest, reinterpret_cast<std::uintptr_t>(stack.data()) + stack.size());
}

TEST(Stack, GuardStopsRecursionOnEveryThread) {
    int onThread = 0;
    std::thread([&onThread] { onThread = descend(0); }).join();
    EXPECT_GT(onThread, 100);
    EXPECT_GT(descend(0), 100);
}

}  // namespace
