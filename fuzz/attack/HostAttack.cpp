// What hosts do around compilations: threads that begin at once, loading and unloading.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <iostream>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "fliodram/MMTargetPrinter.h"
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

#ifdef COMPILING_MODULE
std::size_t residentKilobytes() {
    std::ifstream statistics("/proc/self/statm");
    std::size_t pages = 0;
    statistics >> pages >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

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
