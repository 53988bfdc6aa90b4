// The entry points: the short-cut, the messages of the driver, the boundary for exceptions.
#include "api/ExprParser.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/AttributeShortcut.h"
#include "api/RecordingDialogs.h"
#include "support/OrvException.h"
#include "support/OrvLogBase.h"

namespace {

TEST(AttributeShortcut, TakesADollarAndANameAlone) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"$name", "name"},
        {" \t\n$ \t\nname \t\n", "name"},
        {"$_", "_"},
        {"$a1_B", "a1_B"},
        {"$class", "class"},
        {std::string("$name\0 junk", 11), "name"},
        {"", ""},
        {" ", ""},
        {"$", ""},
        {"$ ", ""},
        {"name", ""},
        {"$1x", ""},
        {"$name + 1", ""},
        {"$name$", ""},
        {"$na me", ""},
        {"$name\r", ""},
        {"$n\xc3\xa4me", ""},
        {"-$name", ""},
    };
    for (const auto& [text, name] : cases) {
        EXPECT_EQ(findBareAttribute(text), name) << text;
        EXPECT_EQ(static_cast<bool>(compileAttributeShortcut(text)), !name.empty()) << text;
    }
}

TEST(ExprParser, ShortcutShowsNoMessage) {
    RecordingDialogs dialogs;
    EXPECT_TRUE(ExprParser::parseAssociatedAttribute(dialogs, " $ name \n"));
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST(ExprParser, TextThatDoesNotParse) {
    RecordingDialogs dialogs;
    EXPECT_FALSE(ExprParser::parseCondition(dialogs, ""));
    ASSERT_FALSE(dialogs.messages.empty());
    EXPECT_EQ(dialogs.messages.back(), "0:0 ExprParser 0 Parse failed.");
}

}  // namespace
