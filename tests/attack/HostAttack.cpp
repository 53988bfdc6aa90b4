// What hosts do around compilations: threads that begin at once, loading and unloading.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
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

/// Writes 1234567.5 as "1'234'567,5".
class GroupedCommas : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\3"; }
};

/// Puts a locale of the C library with a decimal comma in force, and one of C++ that groups digits
/// as well; the locales that were in force come back at the end.
class CommaLocale {
public:
    CommaLocale() : before_(std::locale::global(std::locale({}, new GroupedCommas))) {
        setenv("LOCPATH", LOCALES, 1);
        isInForce_ = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::setlocale(LC_ALL, "C");
        std::locale::global(before_);
    }

    bool isInForce() const { return isInForce_; }

private:
    std::locale before_;
    bool isInForce_ = false;
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

// Numbers are read and written alike, whatever locale the host has set.
TEST(Host, LocalesChangeNothing) {
    const std::string text =
        "string 1234567 + string (real \"1234567.5\" + 0.25) + string integer \"2000000\" + \"1\"";
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);
    ASSERT_EQ(numbersOfTheLocale(), "1234567.5 1234567.5 1");
    const Outcomes expected = compileCorpus();
    const std::string expectedValue = evaluated(text);
    {
        const CommaLocale locale;
        ASSERT_TRUE(locale.isInForce());
        ASSERT_EQ(numbersOfTheLocale(), "1234567,5 1'234'567,5 1.5");
        EXPECT_EQ(compileCorpus(), expected);
        EXPECT_EQ(evaluated(text), expectedValue);
        EXPECT_EQ(numbersOfTheLocale(), "1234567,5 1'234'567,5 1.5");  // it is the host's still
    }
    std::cerr.rdbuf(buffer);
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
