// What hosts do around compilations: threads that begin at once, loading and unloading.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <clocale>
#include <iostream>
#include <latch>
#include <locale>
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

// Numbers are read and written alike, whatever locale the host has set.
TEST(Host, LocalesChangeNothing) {
    const std::string text =
        "string 1234567 + string (real \"1234567.5\" + 0.25) + string integer \"2000000\" + \"1\"";
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);
    const Outcomes expected = compileCorpus();
    const std::locale before = std::locale::global(std::locale({}, new GroupedCommas));
    for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
        (void)std::setlocale(LC_ALL, name);  // where the machine has it
    }
    const Outcomes outcomes = compileCorpus();
    RecordingDialogs dialogs;
    const auto numbers = ExprParser::parseAssociatedAttribute(dialogs, text);
    const std::vector<Thing> things(1);
    const StructModel model(things);
    MMEvaluationContext context(model);
    EXPECT_EQ(numbers->apply(context, things[0].handle()).getText(), "12345671234567.7520000001");
    std::locale::global(before);
    std::cerr.rdbuf(buffer);
    EXPECT_EQ(outcomes, expected);
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
