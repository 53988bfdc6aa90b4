// The phases of a compilation as a host sees them: every message in order, the log, the boundary.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "support/ParseException.h"
#include "support/RecordedLog.h"

namespace {

using std::string_literals::operator""s;
using Messages = std::vector<std::string>;

const std::string parseSucceeded = "0:0 ExprParser 0 Parse succeeded.";
const std::string noErrors = "0:0 ExprParser 0 There were 0 errors during type checking.";
const std::string oneError = "0:0 ExprParser 0 There was 1 error during type checking.";
const std::string notChecked = "0:0 ExprParser 0 Expression did not type check.";
const std::string notParsed = "0:0 ExprParser 0 Parse failed.";

struct Compilation {
    std::string text;
    Messages messages;  ///< "..." at the end stands for any words
};

std::vector<Compilation> compilations() {
    const Messages success = {parseSucceeded, noErrors};
    return {
        {"true", success},
        {"true\r\nand\r\nfalse\r\n", success},
        {"true\0 and ((( \" junk"s, success},
        {R"(opSig this ~= "(")", success},
        // Syntax errors: one each.
        {"", {"1:1 ExprParser 3 ...", notParsed}},
        {"1 +",
         {"1:4 ExprParser 3 Expected an expression, but found the end of the text.", notParsed}},
        {"1 =\r\n  )) ((", {"2:3 ExprParser 3 ...", notParsed}},
        {"1 2 \"open", {"1:3 ExprParser 3 ...", notParsed}},
        // Lexical errors, which end a compilation at once.
        {"(* never closed",
         {"1:16 ExprParser 3 Encountered EOF in comment; comment starts on line 1, column 1. "
          "(Text at point of error is \"\".)"}},
        {"true and\r\n  true *) or",
         {"2:8 ExprParser 3 Encountered comment end marker outside of comments. "
          "(Text at point of error is \"*)\".)"}},
        {"$name = \"open",
         {"1:9 ExprParser 3 Encountered EOF in string. (Text at point of error is \"open\".)"}},
        {"2147483648", {"1:1 ExprParser 3 ..."}},
        {std::string(2000, '(') + "1", {"1:1001 ExprParser 3 Expression is nested too deeply."}},
        // Type errors: one, several, the requirement's.
        {"\"x\"",
         {parseSucceeded,
          "1:1 TypeChecker 3 A complete expression must have type {boolean}; type found is "
          "{string}.",
          oneError, notChecked}},
        {"\tthis",
         {parseSucceeded,
          "1:9 TypeChecker 3 A complete expression must have type {boolean}; type found is "
          "{object}.",
          oneError, notChecked}},
        {"x",
         {parseSucceeded, "1:1 TypeChecker 3 Variable x doesn't exist.", oneError, notChecked}},
        {"true\rand 2",
         {parseSucceeded,
          "1:10 TypeChecker 3 The right-hand side of a logical operator must have type {boolean}; "
          "type found is {integer}.",
          oneError, notChecked}},
        {"1 + true\r\nand not \"x\"\r\n or y",
         {parseSucceeded,
          "1:5 TypeChecker 3 The right-hand side of an arithmetic operator must have type {string} "
          "or {integer} or {real}; type found is {boolean}.",
          "2:9 TypeChecker 3 The operand of unary not must have type {boolean}; type found is "
          "{string}.",
          "3:5 TypeChecker 3 Variable y doesn't exist.",
          "0:0 ExprParser 0 There were 3 errors during type checking.", notChecked}},
    };
}

void expectMessages(const Messages& messages, const Messages& expected, const std::string& text) {
    EXPECT_EQ(messages.size(), expected.size()) << text;
    for (std::size_t i = 0; i < std::min(messages.size(), expected.size()); ++i) {
        const std::size_t words = expected[i].find("...");
        EXPECT_EQ(messages[i].substr(0, words), expected[i].substr(0, words)) << text;
    }
}

TEST(Pipeline, ShowsTheMessagesOfEachPhase) {
    for (const Compilation& c : compilations()) {
        RecordingDialogs dialogs;
        const bool compiled = static_cast<bool>(ExprParser::parseCondition(dialogs, c.text));
        EXPECT_EQ(compiled, c.messages.back() == noErrors) << c.text;
        expectMessages(dialogs.messages, c.messages, c.text);
    }
}

TEST(Pipeline, ShowsAHundredTypeErrorsAndCountsAll) {
    std::string text = "not 1";
    for (int i = 1; i < 150; ++i) {
        text += " and not 1";
    }
    RecordingDialogs dialogs;
    EXPECT_FALSE(ExprParser::parseCondition(dialogs, text));
    ASSERT_EQ(dialogs.messages.size(), 103U);
    EXPECT_EQ(dialogs.messages[100].substr(0, 6), "1:995 ");
    EXPECT_EQ(dialogs.messages[101],
              "0:0 ExprParser 0 There were 150 errors during type checking.");
    EXPECT_EQ(dialogs.messages[102], notChecked);
}

bool compilesThrough(int entryPoint, ExprParserDialogs& dialogs, const std::string& text) {
    return entryPoint == 0 ? static_cast<bool>(ExprParser::parseCondition(dialogs, text))
           : entryPoint == 1
               ? static_cast<bool>(ExprParser::parseAssociatedAttribute(dialogs, text))
               : static_cast<bool>(ExprParser::parseComplexAssociation(dialogs, text));
}

TEST(Pipeline, EachEntryPointDemandsItsTypes) {
    struct Row {
        std::string text;
        std::string type;
        int entryPoint;  ///< the last that takes it: 0 condition, 1 attribute, 2 association, 3
                         ///< none
    };
    const std::vector<Row> rows = {
        {"true", "boolean", 0},
        {"\"x\"", "string", 1},
        {"$name\r\n", "string", 1},
        {"1", "integer", 1},
        {"0.5", "real", 1},
        {"[a]", "( object ) collection", 2},
        {"this", "object", 3},
        {"map {$name} over [a]", "( string ) collection", 3},
        {"`a`", "regexp", 3},
        {"()", "unit", 3},
        {"(1, [a])", "( integer * ( object ) collection )", 3},
    };
    const std::vector<std::string> demands = {
        "{boolean}", "{string} or {integer} or {real} or {boolean}", "{object collection}"};
    for (const Row& row : rows) {
        for (int entryPoint = 0; entryPoint < 3; ++entryPoint) {
            RecordingDialogs dialogs;
            const bool compiled = compilesThrough(entryPoint, dialogs, row.text);
            const bool taken =
                row.entryPoint == entryPoint || (row.entryPoint == 0 && entryPoint == 1);
            const std::string refusal = "1:1 TypeChecker 3 A complete expression must have type " +
                                        demands.at(static_cast<std::size_t>(entryPoint)) +
                                        "; type found is {" + row.type + "}.";
            const Messages refused = {parseSucceeded, refusal, oneError, notChecked};
            EXPECT_EQ(compiled, taken) << row.text << entryPoint;
            expectMessages(dialogs.messages, taken ? Messages{parseSucceeded, noErrors} : refused,
                           row.text);
        }
    }
}

/// Throws from the message of a number, counted from 0.
class FailingDialogs : public RecordingDialogs {
public:
    FailingDialogs(std::size_t number, std::function<void()> action)
        : number_(number), action_(std::move(action)) {}
    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool flag) override {
        RecordingDialogs::showMessage(line, column, source, message, severity, flag);
        if (messages.size() == number_ + 1) {
            action_();
        }
    }

private:
    std::size_t number_;
    std::function<void()> action_;
};

TEST(Pipeline, WhatDialogsThrowFromAnyMessageEndsACompilation) {
    struct Throw {
        std::function<void()> action;
        std::string log;
        Messages message;  ///< that the boundary shows
    };
    const std::vector<Throw> throws = {
        {[] { throw std::runtime_error("no window"); }, "Exception catch: no window\n", {}},
        {[] { throw OrvException("no box"); }, "Exception catch: no box\n", {}},
        {[] { throw 1; }, "Exception catch\n", {}},  // NOLINT(hicpp-exception-baseclass)
        {[] { throw std::bad_alloc(); }, "Exception catch: std::bad_alloc\n", {}},
        {[] { throw ParseException("stop", 7, 8); },
         "Exception catch: stop\n",
         {"7:8 ExprParser 3 stop"}},
    };
    for (const Compilation& c : compilations()) {
        for (std::size_t number = 0; number < c.messages.size(); ++number) {
            for (const Throw& thrown : throws) {
                // An exception from the boundary's own message is swallowed there.
                const bool isAtBoundary = c.messages.size() == 1;
                const RecordedLog log({"Catch"});
                FailingDialogs dialogs(number, thrown.action);
                EXPECT_FALSE(ExprParser::parseCondition(dialogs, c.text)) << c.text;
                Messages expected(c.messages.begin(),
                                  c.messages.begin() + static_cast<std::ptrdiff_t>(number) + 1);
                if (!isAtBoundary) {
                    expected.insert(expected.end(), thrown.message.begin(), thrown.message.end());
                    EXPECT_EQ(log.text(), thrown.log) << c.text;
                }
                expectMessages(dialogs.messages, expected, c.text);
            }
        }
        RecordingDialogs dialogs;
        (void)ExprParser::parseCondition(dialogs, c.text);
        expectMessages(dialogs.messages, c.messages, c.text);
    }
}

TEST(Pipeline, ExceptionsAreLogged) {
    const std::string message =
        "Encountered EOF in string. (Text at point of error is \"open\".)\n";
    struct Row {
        std::string text;
        std::vector<std::string> categories;
        std::string log;
    };
    const std::vector<Row> rows = {
        {"true", {"Throw", "Catch"}, ""},
        {"1 +", {"Throw", "Catch"}, ""},
        {"1 + true", {"Throw", "Catch"}, ""},
        {R"(opSig this = "")", {"Throw", "Catch"}, ""},
        {"\"open",
         {"Throw", "Catch"},
         "Exception throw: " + message + "Exception catch: " + message},
        {"\"open", {"Throw"}, "Exception throw: " + message},
        {"\"open", {"Catch"}, "Exception catch: " + message},
        {"\"open", {}, ""},
    };
    for (const Row& row : rows) {
        const RecordedLog log(row.categories);
        RecordingDialogs dialogs;
        (void)ExprParser::parseCondition(dialogs, row.text);
        EXPECT_EQ(log.text(), row.log) << row.text;
    }
}

}  // namespace
