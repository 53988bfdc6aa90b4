// Regular expressions: what is accepted, what is found, how replacements are written.
#include "rw/RWCRegexp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(RWCRegexp, Status) {
    const std::string nested = std::string(1500, '(') + std::string(1500, ')');
    const std::vector<std::pair<std::string, RWCRegexp::StatVal>> cases = {
        {"", RWCRegexp::ok},
        {"^is[A-Z]", RWCRegexp::ok},
        {"a|b*", RWCRegexp::ok},
        {"(", RWCRegexp::illegal},
        {"a**", RWCRegexp::illegal},
        {"[z-a]", RWCRegexp::illegal},
        {"\\", RWCRegexp::illegal},
        {"(?=a)", RWCRegexp::illegal},
        {"(a)\\1", RWCRegexp::illegal},
        {"\xff", RWCRegexp::illegal},
        {nested, RWCRegexp::ok},
        {"((a{1000}){1000})", RWCRegexp::illegal},
        {"\\pL{1000}", RWCRegexp::tooLong},
    };
    for (const auto& [pattern, status] : cases) {
        const RWCRegexp expression(pattern);
        EXPECT_EQ(expression.status(), status) << pattern.substr(0, 40);
        EXPECT_EQ(expression.matches(""), status == RWCRegexp::ok && pattern != "^is[A-Z]")
            << pattern.substr(0, 40);
    }
}

// Patterns of plain characters are matched without the engine, which searches all the same.
TEST(RWCRegexp, MatchesWhatSearchFinds) {
    const char* const patterns[] = {"",      "^",     "$",     "^$",    "get",  "^get",
                                    "get$",  "^get$", "a\\.b", "\\$",   "^\\^", "g.t",
                                    "^^get", "get$$", "-_ ~",  "\\x41", "[$]",  "^g|x"};
    const char* const texts[] = {"",     "get",   "getName", "budget", "a.b", "axb", "$",
                                 "^get", "get\n", "\xffget", "-_ ~",   "A",   "x"};
    for (const char* const pattern : patterns) {
        const RWCRegexp expression(pattern);
        for (const char* const text : texts) {
            RWCRegexp::Groups groups;
            EXPECT_EQ(expression.matches(text), expression.search(text, 0, groups))
                << pattern << " in " << text;
        }
    }
}

TEST(RWCRegexp, SearchFillsGroups) {
    const RWCRegexp expression("(\\w)=(\\d+)?");
    RWCRegexp::Groups groups;
    ASSERT_TRUE(expression.search("a=1 b= c=3", 1, groups));
    EXPECT_EQ(groups[0], "b=");
    EXPECT_EQ(groups[1], "b");
    EXPECT_EQ(groups[2], "");
    EXPECT_EQ(groups[9], "");
    EXPECT_FALSE(expression.search("a=1", 1, groups));
    EXPECT_FALSE(expression.search("a=1", 9, groups));
    EXPECT_FALSE(RWCRegexp("^b").search("ab", 1, groups));
    EXPECT_FALSE(RWCRegexp("\\bb").search("ab", 1, groups));
}

TEST(RWCRegexp, Replacements) {
    const RWCRegexp::Groups groups = {"whole", "one", "", "three"};
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", ""},    {"plain", "plain"},   {"<\\0>", "<whole>"}, {"\\3\\1\\2", "threeone"},
        {"\\9", ""}, {"a\\\\1b", "a\\1b"}, {"\\x\\", "\\x\\"},   {"\\10", "one0"},
    };
    for (const auto& [replacement, expected] : cases) {
        std::string result;
        RWCRegexp::appendReplacement(result, replacement, groups);
        EXPECT_EQ(result, expected) << replacement;
    }
}

TEST(RWCRegexp, TakesTimeLinearInTheSubject) {
    const RWCRegexp expression("(x+x+)+y");
    EXPECT_FALSE(expression.matches(std::string(1000000, 'x')));
}

}  // namespace
