// Every prefix of a text, and every byte in place of every other and before it: each compiles, or
// has errors that stand at tokens. ATTACK_ALL=1 takes all of 200 texts instead of a tenth.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FuzzText.h"
#include "api/ExprParser.h"
#include "parser/SyntaxParser.h"
#include "support/Corpus.h"
#include "support/ParseException.h"

namespace {

using Places = std::set<std::pair<int, int>>;

/// Collects the places of errors.
class PlaceDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int line, int column, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity severity,
                     bool /*flag*/) override {
        if (severity == Error) {
            errors.emplace(line, column);
        }
    }

    Places errors;
};

// Compiles a text in a buffer that it fills to the last byte.
void attack(const std::string& text) {
    const std::unique_ptr<char[]> exact(new char[text.size() + 1]);
    std::copy(text.c_str(), text.c_str() + text.size() + 1, exact.get());
    std::ostream silent(nullptr);
    PlaceDialogs parserDialogs;
    try {
        const auto tree = SyntaxParser::parse(parserDialogs, exact.get(), silent);
        ASSERT_EQ(static_cast<bool>(tree), parserDialogs.errors.empty())
            << testing::PrintToString(text);
    } catch (const ParseException&) {
        ASSERT_TRUE(parserDialogs.errors.empty()) << testing::PrintToString(text);
    }
    PlaceDialogs dialogs;  // the short-cut takes some texts that are no expressions
    const bool isCompiled =
        static_cast<bool>(ExprParser::parseAssociatedAttribute(dialogs, exact.get()));
    ASSERT_EQ(isCompiled, dialogs.errors.empty()) << testing::PrintToString(text);
    if (!dialogs.errors.empty()) {
        const Places places = placesOf(exact.get());
        ASSERT_TRUE(std::includes(places.begin(), places.end(), dialogs.errors.begin(),
                                  dialogs.errors.end()))
            << testing::PrintToString(text);
    }
}

std::size_t attackEveryByte(const std::string& seed) {
    std::size_t count = 0;
    for (std::size_t position = 0; position <= seed.size(); ++position) {
        attack(seed.substr(0, position));
        ++count;
        for (int byte = 0; byte < 256 && !testing::Test::HasFatalFailure(); ++byte) {
            std::string inserted = seed;
            inserted.insert(position, 1, static_cast<char>(byte));
            attack(inserted);
            ++count;
            if (position < seed.size()) {
                std::string replaced = seed;
                replaced[position] = static_cast<char>(byte);
                attack(replaced);
                ++count;
            }
        }
    }
    return count;
}

// A text that leads into each state of the lexer, followed by every byte and by every pair.
TEST(Bytes, MeetEveryStateOfTheLexer) {
    const std::vector<std::string> prefixes = {
        "",     " ",    "\t",    "\n",   "\r",    "\r\n",   "=",      "=>",    "<",     "<>",
        "<=",   "~",    "~=",    "~<",   "~<>",   ">",      ">=",     "+",     "-",     "->",
        "*",    "*)",   "/",     "&",    "(",     "(*",     ")",      "{",     "}",     "@",
        ";",    ":",    ",",     "^",    "_",     "$",      "|",      "|=",    "|=>",   "1",
        "1.",   "1.5",  "a",     "a1",   "]",     "(* ",    "(*a",    "(**",   "(*\n",  "(*\r",
        "(*\t", "\"",   "\"a",   "\"\\", "\"\\n", "\"\\\"", "\"\\\\", "\"\\r", "\"\\t", "\"\n",
        "\"\r", "[",    "[a",    "[\\",  "[\\]",  "[\\\\",  "[\n",    "[\r",   "`",     "`a",
        "`\\",  "`\\`", "`\\\\", "`\n",  "`\r"};
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);
    for (const std::string& prefix : prefixes) {
        for (int first = 0; first < 256 && !HasFatalFailure(); ++first) {
            attack(prefix + static_cast<char>(first));
            for (const char second : std::string("a1\"\\]`*)>\n")) {
                attack(prefix + static_cast<char>(first) + second);
            }
        }
    }
    std::cerr.rdbuf(buffer);
}

TEST(Bytes, EachEndsInSuccessOrAtATokensPlace) {
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);  // where dropped characters go
    std::vector<std::string> seeds;
    for (const CorpusText& row : corpus()) {
        constexpr std::size_t longest = 60;
        if (row.text.size() <= longest) {
            seeds.push_back(row.text);
        }
    }
    seeds.resize(std::min<std::size_t>(seeds.size(), 200));
    const std::size_t step = std::getenv("ATTACK_ALL") != nullptr ? 1 : 10;
    std::size_t count = 0;
    for (std::size_t i = 0; i < seeds.size() && !HasFatalFailure(); i += step) {
        count += attackEveryByte(seeds[i]);
    }
    std::cerr.rdbuf(buffer);
    std::cout << count << " texts from " << seeds.size() / step << " seeds\n";
    EXPECT_GT(count, 10'000U);
}

}  // namespace
