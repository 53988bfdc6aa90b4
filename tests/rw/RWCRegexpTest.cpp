// Regular expressions: what is accepted, what is found, how replacements are written.
#include "rw/RWCRegexp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RepeatedText.h"

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
        {"(a{10}){101}", RWCRegexp::illegal},
        {"(\\pL{63}){0,2}", RWCRegexp::ok},
        {"\\pL{129}", RWCRegexp::tooLong},
        {"((\\pL{0,9}){0,9}){0,9}", RWCRegexp::tooLong},
        {repeat("a?", 5303), RWCRegexp::ok},
        {repeat("a?", 5304), RWCRegexp::tooLong},
        {repeat("(", 32769), RWCRegexp::tooLong},  // not looked at any more
        {repeat("\\pL?", 130), RWCRegexp::tooLong},
        {repeat("a{0,1000}", 5), RWCRegexp::ok},
        {repeat("a{0,1000}", 6), RWCRegexp::tooLong},
        {repeat("a{1000}", 40), RWCRegexp::tooLong},
    };
    for (const auto& [pattern, status] : cases) {
        const RWCRegexp expression(pattern);
        EXPECT_EQ(expression.status(), status) << pattern.substr(0, 40);
        EXPECT_EQ(expression.matches(""), status == RWCRegexp::ok && pattern != "^is[A-Z]")
            << pattern.substr(0, 40);
    }
}

// The engine would take seconds and gigabytes for some of these, or complain on standard error.
TEST(RWCRegexp, WeighsWhatTheEngineWouldTake) {
    const std::vector<std::pair<std::string, std::size_t>> cases = {
        {"", 0},
        {"^is[A-Z]", 3 + 1 + 2},
        {"\\pL", 256},
        {"\\PL{2}[\\p{Greek}\\]\\P]]\\\\\\p", 2 * 256 + 1 + 255 + 255 + 8 + 1 + 256},
        {"[]a]{3}[^]a]{4}[", 3 * 3 + 4 * 3 + 1},
        {"ab{3}", 1 + 3},
        {"(ab|\\pL){5}?", 5 * (2 + 3 + 256)},
        {"a{0,1000}", 1000 + 976},
        {"a{900,1000}b{0}", 1000 + 9 + 1},
        {"((a{0,8}){8}b?){1,32}", 32 * (2 + 8 * (2 + 8) + 1) + 4351},
        {"a{7,}b{,7}c{x}d{1001}e{8", 7 + 19},
        {"\\x{100}{3}\\{9}\\x4{2}))?", 3 + 1 + 2 + 2},
        {"(((a", 3 * 2 + 1},
    };
    for (const auto& [pattern, weight] : cases) {
        EXPECT_EQ(RWCRegexp::weigh(pattern), weight) << pattern;
    }
    for (const char* const piece :
         {"a", "(a)|(b)?", "\\pL", "[^\\PL]|", "(?i)k", ".", "\\W", "a{1000}", "a{0,1000}",
          "((a{0,10}){0,10}){0,10}", "|", "\\x{100}"}) {
        const RWCRegexp expression(repeat(piece, 400'000));
        EXPECT_EQ(expression.status(), RWCRegexp::tooLong) << piece;
        EXPECT_FALSE(expression.matches("a")) << piece;
        RWCRegexp::Groups groups;
        EXPECT_FALSE(expression.search("a", 0, groups)) << piece;
    }
}

TEST(RWCRegexp, TellsTheWorstOfASearch) {
    const RWCRegexp small("a[bc]d");
    const RWCRegexp large("a[bc]{100}d");
    EXPECT_GT(large.worstMatch(1000), 10 * small.worstMatch(1000));
    EXPECT_EQ(small.worstMatch(1999), 2 * small.worstMatch(999));
    EXPECT_EQ(small.worstMatch(99), small.worstSearch(99));
    const RWCRegexp plain("^get");  // needs no engine to match
    EXPECT_EQ(plain.worstMatch(1000), 1001U);
    EXPECT_GT(plain.worstSearch(1000), 1000U);
    EXPECT_GT(RWCRegexp(repeat("a", 257)).worstMatch(1000), 100'000U);
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
    ASSERT_TRUE(expression.search("a=1", 0, groups, 2));
    EXPECT_EQ(groups[0], "a=1");
    EXPECT_EQ(groups[1], "a");
    EXPECT_EQ(groups[2], "");
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
        EXPECT_EQ(RWCRegexp::ReplacementParts(replacement).size(groups), expected.size())
            << replacement;
    }
}

// Backslashes stand where a piece ends, in runs of both parities, and all over.
TEST(RWCRegexp, LongReplacementsMayBeWrittenInPieces) {
    const RWCRegexp::Groups groups = {"whole", "one"};
    const std::size_t pieceSize = RWCRegexp::firstPiece(std::string(200'000, 'x')).size();
    ASSERT_LT(pieceSize, 100'000);
    for (std::size_t plain = pieceSize - 6; plain <= pieceSize + 1; ++plain) {
        for (std::size_t backslashes = 1; backslashes <= 5; ++backslashes) {
            const std::string replacement = std::string(plain, 'x') +
                                            std::string(backslashes, '\\') + "1" +
                                            std::string(pieceSize * 2, '\\') + "0";
            const std::string expected =
                std::string(plain, 'x') + std::string(backslashes / 2, '\\') +
                (backslashes % 2 != 0 ? "one" : "1") + std::string(pieceSize, '\\') + "0";
            std::string result;
            RWCRegexp::ReplacementParts parts;
            for (std::string_view rest = replacement; !rest.empty();) {
                const std::string_view piece = RWCRegexp::firstPiece(rest);
                ASSERT_FALSE(piece.empty());
                RWCRegexp::appendReplacement(result, piece, groups);
                parts.add(piece);
                rest.remove_prefix(piece.size());
            }
            EXPECT_TRUE(result == expected) << plain << ", " << backslashes;
            EXPECT_EQ(parts.size(groups), expected.size()) << plain << ", " << backslashes;
        }
    }
}

TEST(RWCRegexp, ReplacementsTellTheGroupsThatTheyNeed) {
    const std::vector<std::pair<std::string, std::size_t>> cases = {
        {"", 1}, {"a\\\\3", 1}, {"\\0", 1}, {"\\3\\1", 4}, {"\\9", 10}};
    for (const auto& [replacement, count] : cases) {
        EXPECT_EQ(RWCRegexp::ReplacementParts(replacement).groupCount(), count) << replacement;
    }
}

TEST(RWCRegexp, TakesTimeLinearInTheSubject) {
    const RWCRegexp expression("(x+x+)+y");
    EXPECT_FALSE(expression.matches(std::string(1000000, 'x')));
}

}  // namespace
