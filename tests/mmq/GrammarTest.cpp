// The grammar of editors has the words of the language, all of them and no others.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "namespace/TopLevelEnvironment.h"
#include "parser/KeywordTable.h"

namespace {

constexpr const char* grammarFile =
    EXPRPARSER_SOURCE_DIR "/editors/vscode/syntaxes/mmq.tmLanguage.json";

// The words between the brackets of "(a|b)(?!...)", of all patterns that stand under a name.
std::multiset<std::string> wordsOf(const std::string& name) {
    std::ifstream file(grammarFile);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    rapidjson::Document grammar;
    grammar.Parse(text.c_str());
    std::multiset<std::string> words;
    for (const auto& pattern : grammar["repository"][name.c_str()]["patterns"].GetArray()) {
        const std::string match = pattern["match"].GetString();
        std::istringstream list(match.substr(1, match.find(')') - 1));
        for (std::string word; std::getline(list, word, '|');) {
            words.insert(word);
        }
    }
    return words;
}

TEST(Grammar, HasTheWordsOfTheLanguage) {
    std::multiset<std::string> keywords;
    for (const KeywordTable::Entry& entry : KeywordTable::instance()->entries()) {
        keywords.emplace(entry.word);
    }
    std::set<std::string> functions;
    for (const Scope::Entry& entry : TopLevelEnvironment::instance()->getScope()->entries()) {
        const std::string name(entry.name);
        if (name.rfind("operator", 0) != 0 && keywords.count(name) == 0) {
            functions.insert(name);
        }
    }
    EXPECT_EQ(wordsOf("keywords"), keywords);
    EXPECT_EQ(wordsOf("functions"), std::multiset<std::string>(functions.begin(), functions.end()));
}

}  // namespace
