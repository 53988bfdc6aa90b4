// Compilations by the hundred thousand grow the process no further. ATTACK_ALL=1 makes a million.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "ProcessMemory.h"
#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "support/Corpus.h"

namespace {

// Compiles the texts of the corpus in turn.
void compile(std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        for (const CorpusText& row : corpus()) {
            RecordingDialogs dialogs;
            (void)ExprParser::parseAssociatedAttribute(dialogs, row.text);
            done += 1;
        }
    }
}

TEST(Growth, EndsAfterTheFirstCompilations) {
    const std::size_t count = std::getenv("ATTACK_ALL") != nullptr ? 1'000'000 : 50'000;
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);  // where dropped characters go
    compile(count / 10);
    const std::size_t before = residentKilobytes();
    compile(count - count / 10);
    const std::size_t after = residentKilobytes();
    std::cerr.rdbuf(buffer);
    std::cout << count << " compilations: " << before << " KB, then " << after << " KB\n";
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__clang__)
    EXPECT_LT(after, before + 1024);  // a sanitizer keeps what was freed
#endif
}

}  // namespace
