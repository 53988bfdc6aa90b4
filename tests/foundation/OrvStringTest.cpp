// OrvString: value semantics, edits, searches, order and hash.
#include "foundation/OrvString.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/OrvException.h"

namespace {

struct EditCase {
    const char* what;
    const char* before;
    std::function<void(OrvString&)> edit;
    std::string after;
};

TEST(OrvString, Edits) {
    const std::vector<EditCase> cases = {
        {"insert at the front", "bc", [](OrvString& s) { s.insert(0, "a"); }, "abc"},
        {"insert at the end", "ab", [](OrvString& s) { s.insert(2, "c"); }, "abc"},
        {"insert itself", "ab", [](OrvString& s) { s.insert(1, s); }, "aabb"},
        {"append a string", "a", [](OrvString& s) { s.append(OrvString("bc")); }, "abc"},
        {"append itself", "ab", [](OrvString& s) { s.append(s); }, "abab"},
        {"append part of a string", "a", [](OrvString& s) { s.append(OrvString("bcd"), 2); },
         "abc"},
        {"append more than there is", "a", [](OrvString& s) { s.append(OrvString("b"), 9); }, "ab"},
        {"append part of a C string", "a", [](OrvString& s) { s.append("bcd", 1); }, "ab"},
        {"a C string ends at its NUL", "a", [](OrvString& s) { s.append("b\0c", 3); }, "ab"},
        {"a null C string is empty", "a", [](OrvString& s) { s.append(nullptr, 3); }, "a"},
        {"assign a null C string", "a", [](OrvString& s) { s = static_cast<const char*>(nullptr); },
         ""},
        {"assign itself", "abc", [](OrvString& s) { s = *&s; }, "abc"},
        {"remove to the end", "abcd", [](OrvString& s) { s.remove(2); }, "ab"},
        {"remove some", "abcd", [](OrvString& s) { s.remove(1, 2); }, "ad"},
        {"remove more than there is", "abcd", [](OrvString& s) { s.remove(3, 9); }, "abc"},
        {"remove at the end", "ab", [](OrvString& s) { s.remove(2); }, "ab"},
        {"replacing does not look at replacements", "aaa",
         [](OrvString& s) { s.replaceStr("a", "aa"); }, "aaaaaa"},
        {"replacing goes from left to right", "aaa", [](OrvString& s) { s.replaceStr("aa", "b"); },
         "ba"},
        {"replace at both ends", "-x-", [](OrvString& s) { s.replaceStr("-", ""); }, "x"},
        {"an empty pattern occurs nowhere", "abc", [](OrvString& s) { s.replaceStr("", "x"); },
         "abc"},
        {"upper case leaves other bytes", "a1\xc3\xa4z", [](OrvString& s) { s.toUpper(); },
         "A1\xc3\xa4Z"},
        {"lower case", "AbZ[", [](OrvString& s) { s.toLower(); }, "abz["},
    };
    for (const EditCase& c : cases) {
        OrvString text(c.before);
        c.edit(text);
        EXPECT_EQ(text.data(), c.after) << c.what;
        EXPECT_EQ(text.length(), c.after.size()) << c.what;
    }
}

TEST(OrvString, Searches) {
    const OrvString text("abcabc");
    EXPECT_EQ(text.find("ca"), 2U);
    EXPECT_EQ(text.find(""), 0U);
    EXPECT_EQ(text.find("CA"), OrvString::notFound);
    EXPECT_EQ(text.first('c'), 2U);
    EXPECT_EQ(text.first(OrvString("xcb")), 1U);
    EXPECT_EQ(text.first(OrvString("")), OrvString::notFound);
    EXPECT_EQ(text.last('b'), 4U);
    EXPECT_EQ(text.last('x'), OrvString::notFound);
    EXPECT_EQ(OrvString::notFound, ~std::size_t{0});
    EXPECT_TRUE(text.startsWith("abc"));
    EXPECT_TRUE(text.startsWith(""));
    EXPECT_TRUE(OrvString().startsWith(""));
    EXPECT_FALSE(text.startsWith("abcabcd"));
    EXPECT_FALSE(text.startsWith("Abc"));
}

TEST(OrvString, PositionsPastTheEndAreRefused) {
    OrvString text("ab");
    try {
        text.insert(3, "x");
        ADD_FAILURE() << "no exception";
    } catch (const OrvException& exception) {
        EXPECT_STREQ(exception.what(), "Position 3 is past the end of a string of length 2");
    }
    EXPECT_THROW(text.remove(3), OrvException);
    EXPECT_THROW(text.remove(3, 1), OrvException);
    EXPECT_STREQ(text.data(), "ab");
}

TEST(OrvString, OrderIsThatOfBytes) {
    const std::vector<OrvString> ascending = {OrvString(),
                                              OrvString(std::string_view("\0", 1)),
                                              OrvString("A"),
                                              OrvString("a"),
                                              OrvString(std::string_view("a\0", 2)),
                                              OrvString("ab"),
                                              OrvString("b"),
                                              OrvString("\xff")};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << ' ' << j;
            EXPECT_EQ(ascending[i] > ascending[j], i > j) << i << ' ' << j;
            EXPECT_EQ(ascending[i] == ascending[j], i == j) << i << ' ' << j;
            EXPECT_EQ(ascending[i] != ascending[j], i != j) << i << ' ' << j;
            EXPECT_EQ(ascending[i].hash() == ascending[j].hash(), i == j) << i << ' ' << j;
        }
    }
    EXPECT_EQ(OrvString("").hash(), 2166136261U);
    EXPECT_EQ(OrvString("foobar").hash(), 0xbf9cf968U);
}

TEST(OrvString, CopiesAreIndependent) {
    OrvString original("a");
    OrvString copy(original);
    copy.append("b");
    EXPECT_STREQ(original.data(), "a");
    original = copy;
    copy = "";
    EXPECT_STREQ(original.data(), "ab");
    EXPECT_TRUE(copy.isEmpty());
}

}  // namespace
