// What hosts do around compilations: threads that begin at once, loading and unloading.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iomanip>
#include <iostream>
#include <latch>
#include <locale>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "ProcessMemory.h"
#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/StructModel.h"
#include "support/Corpus.h"
#include "support/SilentErrors.h"

namespace {

using Outcomes = std::vector<std::string>;

// What becomes of every text of the corpus: the target expression, or the messages.
Outcomes compileCorpus() {
    Outcomes outcomes;
    for (const CorpusText& text : corpus()) {
        RecordingDialogs dialogs;
        const auto compiled = ExprParser::parseAssociatedAttribute(dialogs, text.text);
        std::string outcome = compiled ? printedTarget(*compiled) : "";
        for (const std::string& message : dialogs.messages) {
            outcome += message + "\n";
        }
        outcomes.push_back(std::move(outcome));
    }
    return outcomes;
}

/// Writes 1234567.5 as "1'234'567,5".
class GroupedCommas : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\3"; }
};

/// Puts a locale of the C library with a decimal comma in force, and one of C++ that groups digits,
/// or one of them; the locales that were in force come back at the end.
class CommaLocale {
public:
    explicit CommaLocale(bool isOfStreams = true, bool isOfTheLibrary = true) {
        if (isOfStreams) {
            std::locale::global(std::locale({}, new GroupedCommas));
        }
        if (isOfTheLibrary) {
            setenv("LOCPATH", LOCALES, 1);
            std::setlocale(LC_ALL, "de_DE.UTF-8");
        }
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::setlocale(LC_ALL, "C");
        std::locale::global(before_);
    }

private:
    std::locale before_;
};

// 1234567.5, as the C library writes it and a stream does, and what the C library reads of "1,5".
std::string numbersOfTheLocale() {
    std::array<char, 32> written{};
    (void)std::snprintf(written.data(), written.size(), "%.1f", 1234567.5);
    std::ostringstream stream;
    stream << std::fixed << std::setprecision(1) << 1234567.5;
    return std::string(written.data()) + " " + stream.str() + " " +
           (std::strtod("1,5", nullptr) == 1.5 ? "1.5" : "1");
}

// The value of an expression, and the target that it was compiled to.
std::string evaluated(const std::string& text) {
    RecordingDialogs dialogs;
    const auto compiled = ExprParser::parseAssociatedAttribute(dialogs, text);
    const std::vector<Thing> things(1);
    const StructModel model(things);
    MMEvaluationContext context(model);
    const MMValue value = compiled->apply(context, things[0].handle());
    return std::string(value.getText()) + " of " + printedTarget(*compiled);
}

const char* const numbersText =
    "string 1234567 + string (real \"1234567.5\" + 0.25) + string integer \"2000000\" + \"1\"";

/// Which locale is strange in a process, and what its numbers look like then.
struct StrangeLocale {
    bool isOfStreams;
    bool isOfTheLibrary;
    const char* numbers;
};

constexpr StrangeLocale strangeLocales[] = {{false, false, "1234567.5 1234567.5 1"},
                                            {true, false, "1234567.5 1'234'567,5 1"},
                                            {false, true, "1234567,5 1234567.5 1.5"},
                                            {true, true, "1234567,5 1'234'567,5 1.5"}};

// What a process comes to whose first compilation is under a locale.
std::string firstCompilationsUnder(const StrangeLocale& strange) {
    const SilentErrors silent;
    const CommaLocale locale(strange.isOfStreams, strange.isOfTheLibrary);
    if (numbersOfTheLocale() != strange.numbers) {
        return "another locale";
    }
    std::string all = evaluated(numbersText) + "\n";
    for (const std::string& outcome : compileCorpus()) {
        all += outcome + "\n";
    }
    return all;
}

// Runs the work in a child, which has compiled nothing before, and hands its result over.
std::string inAFreshProcess(const std::function<std::string()>& work) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        const std::string result = work();
        _exit(write(ends[1], result.data(), result.size()) == std::ssize(result) ? 0 : 1);
    }
    close(ends[1]);
    std::string result;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;) {
        result.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    return result;
}

// What all compilations share is made by the first one, whose locale must not show in it. This
// process compiles nothing before its children run, nor here.
TEST(Host, LocalesOfTheFirstCompilationChangeNothing) {
    std::string expected;
    for (const StrangeLocale& strange : strangeLocales) {
        const std::string outcome =
            inAFreshProcess([&strange] { return firstCompilationsUnder(strange); });
        expected = expected.empty() ? outcome : expected;
        EXPECT_GT(outcome.size(), 10'000U) << outcome;
        EXPECT_EQ(outcome, expected) << strange.numbers;
    }
}

// Nothing was compiled before in this process, so the threads also race to make what all share.
TEST(Host, ThreadsMakeTheirFirstCompilationsAtOnce) {
    constexpr std::size_t threadCount = 8;
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);  // where dropped characters go
    std::vector<Outcomes> outcomes(threadCount);
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (Outcomes& mine : outcomes) {
        threads.emplace_back([&mine, &start] {
            start.arrive_and_wait();
            mine = compileCorpus();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const Outcomes expected = compileCorpus();
    std::cerr.rdbuf(buffer);
    for (const Outcomes& mine : outcomes) {
        EXPECT_EQ(mine, expected);
    }
}

// Numbers are read and written alike, whatever locale the host has set.
TEST(Host, LocalesChangeNothing) {
    const SilentErrors silent;
    ASSERT_EQ(numbersOfTheLocale(), "1234567.5 1234567.5 1");
    const Outcomes expected = compileCorpus();
    const std::string expectedValue = evaluated(numbersText);
    {
        const CommaLocale locale;
        ASSERT_EQ(numbersOfTheLocale(), "1234567,5 1'234'567,5 1.5");
        EXPECT_EQ(compileCorpus(), expected);
        EXPECT_EQ(evaluated(numbersText), expectedValue);
        EXPECT_EQ(numbersOfTheLocale(), "1234567,5 1'234'567,5 1.5");  // it is the host's still
    }
    EXPECT_EQ(expectedValue.substr(0, 29), "12345671234567.7520000001 of ");
}

#ifdef COMPILING_MODULE
// The module carries the shared libraries with it and compiles on a thread of its own, too.
TEST(Host, LoadingAndUnloadingGrowsNothing) {
    std::size_t before = 0;
    for (int round = 0; round < 1000; ++round) {
        if (round == 100) {
            before = residentKilobytes();
        }
        void* const module = dlopen(COMPILING_MODULE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        const auto compile = reinterpret_cast<int (*)()>(dlsym(module, "compileTexts"));
        ASSERT_NE(compile, nullptr);
        ASSERT_EQ(compile(), 2);
        dlclose(module);
        ASSERT_EQ(dlopen("libexprparser.so.0", RTLD_NOW | RTLD_NOLOAD), nullptr);
    }
    EXPECT_LT(residentKilobytes(), before + 1024);
}
#endif

}  // namespace
