// The program as a person uses it: recorded sessions are run again and compared, those of
// tests/mmq/*.golden and those in the documents. UPDATE_GOLDEN=1 records them anew.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "mmq/ConsoleSession.h"

namespace {

namespace fs = std::filesystem;

std::vector<std::string> filesIn(const std::string& folder, const std::string& extension) {
    std::vector<std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == extension) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void checkSessions(const std::string& path, bool isDocument) {
    const SessionFile file(path, isDocument);
    const bool isUpdate = std::getenv("UPDATE_GOLDEN") != nullptr;
    std::vector<std::string> outputs;
    for (const ConsoleCommand& command : file.commands()) {
        outputs.push_back(runCommand(command.command));
        if (!isUpdate) {
            EXPECT_EQ(outputs.back(), command.output)
                << path << ":" << command.line << ": " << command.command;
        }
    }
    if (isUpdate) {
        file.rewrite(outputs);
    }
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P(Golden, SessionsAreAsRecorded) { checkSessions(GetParam(), false); }

class Documents : public testing::TestWithParam<std::string> {};

TEST_P(Documents, SessionsAreAsPrinted) { checkSessions(GetParam(), true); }

std::string nameOf(const testing::TestParamInfo<std::string>& info) {
    std::string name = fs::path(info.param).stem().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

std::vector<std::string> documents() {
    std::vector<std::string> files = filesIn(EXPRPARSER_SOURCE_DIR "/docs", ".md");
    files.emplace_back(EXPRPARSER_SOURCE_DIR "/README.md");
    return files;
}

INSTANTIATE_TEST_SUITE_P(Mmq, Golden,
                         testing::ValuesIn(filesIn(EXPRPARSER_SOURCE_DIR "/tests/mmq", ".golden")),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Mmq, Documents, testing::ValuesIn(documents()), nameOf);

}  // namespace
