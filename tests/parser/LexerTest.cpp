// The lexer: tokens with their places, dropped characters, fatal errors; the token buffer; the
// keyword table.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "parser/ColumnTokenBuffer.h"
#include "parser/KeywordTable.h"
#include "parser/ParseOutcome.h"

namespace {

using std::string_literals::operator""s;
using Cases = std::vector<std::pair<std::string, std::string>>;

// All tokens as "LINE:COLUMN NUMBER 'TEXT'", the end included, then what was thrown.
std::string dump(const ScanOutcome& outcome) {
    std::string dump;
    for (const TokenPtr& token : outcome.tokens) {
        dump += dump.empty() ? "" : " ";
        dump += std::to_string(token->getLine()) + ":" + std::to_string(token->getColumn()) + " " +
                std::to_string(token->getNumber()) + " '" + token->getText() + "'";
    }
    return outcome.exception.empty() ? dump : dump + " threw " + outcome.exception;
}

std::string dropped(int line, const std::string& text) {
    return "invalid token near line " + std::to_string(line) + " (text was '" + text + "')\n";
}

std::string atError(const std::string& text) {
    return " (Text at point of error is \"" + text + "\".)";
}

struct ScanCase {
    std::string text;
    std::string tokens;
    std::string dropped = {};
    int mode = 0;
};

void checkScans(const std::vector<ScanCase>& cases) {
    for (const ScanCase& c : cases) {
        const ScanOutcome outcome = scan(c.text, c.mode);
        EXPECT_EQ(dump(outcome), c.tokens) << c.text;
        EXPECT_EQ(outcome.dropped, c.dropped) << c.text;
    }
}

const std::vector<KeywordTable::Entry> keywords = {
    {"for_all", 34}, {"there_exists", 35}, {"let", 36},     {"in", 37},      {"if", 38},
    {"then", 39},    {"else", 40},         {"map", 41},     {"filter", 42},  {"traverse", 43},
    {"sort", 44},    {"sortd", 45},        {"over", 46},    {"implies", 47}, {"and", 48},
    {"or", 49},      {"not", 50},          {"of", 51},      {"this", 52},    {"current", 53},
    {"model", 54},   {"string", 55},       {"integer", 56}, {"real", 57},    {"boolean", 58},
    {"true", 102},   {"false", 103}};

TEST(Lexer, Words) {
    const auto whole = [](const std::string& text, int number) {
        return "1:1 " + std::to_string(number) + " '" + text +
               "' 1:" + std::to_string(text.size() + 1) + " 1 ''";
    };
    std::vector<ScanCase> cases;
    const std::vector<std::string> symbols = {"=", "<>", "~=", "~<>", "<",  "<=", ">", ">=", "+",
                                              "-", "*",  "/",  "&",   "->", "(",  ")", "{",  "}",
                                              "@", ";",  ":",  "^",   "_",  "=>", ",", "$",  "|=>"};
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const int number = static_cast<int>(i) + 5;
        cases.push_back({symbols[i], whole(symbols[i], number)});
        EXPECT_EQ(tokenName(number), symbols[i]);
    }
    for (const KeywordTable::Entry& keyword : keywords) {
        const std::string word(keyword.word);
        cases.push_back({word, whole(word, keyword.tokenNumber)});
        // Neither a part of a longer word nor a word with a capital letter is a keyword.
        std::string capital = word;
        capital.back() = static_cast<char>(capital.back() - 'a' + 'A');
        for (const std::string& name : {word + "_", "x" + word, word + "1", capital}) {
            cases.push_back({name, whole(name, 101)});
        }
    }
    for (const char* const name : {"True", "x", "_x", "__", "_1", "x_", "aZ_09", "nots", "AND"}) {
        cases.push_back({name, whole(name, 101)});
    }
    for (const char* const integer : {"0", "007", "99999999999999999999"}) {
        cases.push_back({integer, whole(integer, 63)});
    }
    for (const char* const real : {"1.5", "00.10", "123456789012345678901.0"}) {
        cases.push_back({real, whole(real, 64)});
    }
    for (const int number : {-1, 0, 104}) {
        EXPECT_EQ(tokenName(number), "Invalid");
    }
    const std::string name(100000, 'n');
    cases.push_back({name, whole(name, 101)});
    checkScans(cases);
    EXPECT_EQ(dump(scan(name, 0, 4)), whole(name, 101));
}

TEST(Lexer, Tokens) {
    checkScans({
        {"", "1:1 1 ''"},
        // The longest match wins.
        {"a->b===>",
         "1:1 101 'a' 1:2 18 '->' 1:4 101 'b' 1:5 5 '=' 1:6 5 '=' 1:7 28 '=>' 1:9 1 ''"},
        {"<=><>=>", "1:1 10 '<=' 1:3 11 '>' 1:4 6 '<>' 1:6 28 '=>' 1:8 1 ''"},
        {"<->=>", "1:1 9 '<' 1:2 18 '->' 1:4 28 '=>' 1:6 1 ''"},
        {"~=~<>|=>", "1:1 7 '~=' 1:3 8 '~<>' 1:6 31 '|=>' 1:9 1 ''"},
        {"$n 1e5", "1:1 30 '$' 1:2 101 'n' 1:4 63 '1' 1:5 101 'e5' 1:7 1 ''"},
        {"-1.5x", "1:1 14 '-' 1:2 64 '1.5' 1:5 101 'x' 1:6 1 ''"},
        // Lines and tab stops.
        {"x\n  y", "1:1 101 'x' 2:3 101 'y' 2:4 1 ''"},
        {"a\r\nb\rc\n", "1:1 101 'a' 2:1 101 'b' 2:3 101 'c' 3:1 1 ''"},
        {"\tx\n1234567\ty\n12345678\tz",
         "1:9 101 'x' 2:1 63 '1234567' 2:9 101 'y' "
         "3:1 63 '12345678' 3:17 101 'z' 3:18 1 ''"},
        {"a\t\tx\n\ty", "1:1 101 'a' 1:17 101 'x' 2:9 101 'y' 2:10 1 ''"},
        // Comments do not nest and may hold anything.
        {"a (* x (* y *) b", "1:1 101 'a' 1:16 101 'b' 1:17 1 ''"},
        {"(**)a(***)b(* **)c", "1:5 101 'a' 1:11 101 'b' 1:18 101 'c' 1:19 1 ''"},
        {"(*\t*)x", "1:11 101 'x' 1:12 1 ''"},
        {"(*\n\n*) x (* \" ` [ \\ # \xC3 *) y", "3:4 101 'x' 3:24 101 'y' 3:25 1 ''"},
        // Strings: a tab moves to a tab stop as an escape alone.
        {R"("" "\\" x)", "1:1 73 '' 1:4 73 '\\' 1:9 101 'x' 1:10 1 ''"},
        {R"("a\"b\\c" x)", "1:1 73 'a\"b\\c' 1:11 101 'x' 1:12 1 ''"},
        {R"("a\nb\rc" x)", "1:1 73 'a\nb\rc' 1:11 101 'x' 1:12 1 ''"},
        {R"("12345\t" x)", "1:1 73 '12345\t' 1:11 101 'x' 1:12 1 ''"},
        {R"("123456\t" x)", "1:1 73 '123456\t' 1:19 101 'x' 1:20 1 ''"},
        {"\"a\tb\" x", "1:1 73 'a\tb' 1:7 101 'x' 1:8 1 ''"},
        {"\"[a] `(* *)\" x", "1:1 73 '[a] `(* *)' 1:14 101 'x' 1:15 1 ''"},
        // Association names.
        {R"([] [a\]b\\] x)", "1:1 84 '' 1:4 84 'a]b\\' 1:13 101 'x' 1:14 1 ''"},
        {R"([a\nb\rc] x)", "1:1 84 'a\nb\rc' 1:11 101 'x' 1:12 1 ''"},
        {R"([a\tb] x)", "1:1 84 'a\tb' 1:12 101 'x' 1:13 1 ''"},
        {"[a[\t\"`] x", "1:1 84 'a[\t\"`' 1:9 101 'x' 1:10 1 ''"},
        // Patterns know no escapes.
        {R"(`` `a\d\` x)", "1:1 95 '' 1:4 95 'a\\d\\' 1:11 101 'x' 1:12 1 ''"},
        {"`a\t[\"](*` x", "1:1 95 'a\t[\"](*' 1:11 101 'x' 1:12 1 ''"},
        // The text ends at its first NUL.
        {"a\0 b"s, "1:1 101 'a' 1:2 1 ''"},
        {"\"a\0\""s, " threw 1:1 Encountered EOF in string." + atError("a")},
        // An unfinished token takes the character after it along.
        {"1.", "1:3 1 ''", dropped(1, "1.")},
        {"1.x y", "1:5 101 'y' 1:6 1 ''", dropped(1, "1.")},
        {"1..2", "1:4 63 '2' 1:5 1 ''", dropped(1, "1.")},
        {"1.5.2", "1:1 64 '1.5' 1:5 63 '2' 1:6 1 ''", dropped(1, "")},
        {".5", "1:2 63 '5' 1:3 1 ''", dropped(1, "")},
        {"~ab", "1:3 101 'b' 1:4 1 ''", dropped(1, "~")},
        {"~~=", "1:3 5 '=' 1:4 1 ''", dropped(1, "~")},
        {"~<=a", "1:4 101 'a' 1:5 1 ''", dropped(1, "~<")},
        {"|=", "1:3 1 ''", dropped(1, "|=")},
        {"|= >", "1:4 11 '>' 1:5 1 ''", dropped(1, "|=")},
        {"||=>", "1:3 28 '=>' 1:5 1 ''", dropped(1, "|")},
        {"\n\n # \n 1.# !", "4:7 1 ''", dropped(3, "") + dropped(4, "1.") + dropped(4, "")},
        {"1.\nx", "1:4 101 'x' 1:5 1 ''", dropped(1, "1.")},
        // An escape that does not exist drops the text before it; the mode stays.
        {R"("ab\qc" x)", "1:6 73 'c' 1:9 101 'x' 1:10 1 ''", dropped(1, "ab\\")},
        {R"("a\tb\]" x)", "1:12 73 '' 1:14 101 'x' 1:15 1 ''", dropped(1, "a\tb\\")},
        {R"([ab\"c] x)", "1:6 84 'c' 1:9 101 'x' 1:10 1 ''", dropped(1, "ab\\")},
        {"\"a\\\nb\" x", "1:5 73 'b' 1:8 101 'x' 1:9 1 ''", dropped(1, "a\\")},
        {"\"a\\", " threw 1:4 Encountered EOF in string." + atError(""), dropped(1, "a\\")},
        // A lexer that starts in another mode.
        {"a (* *) b", "1:9 101 'b' 1:10 1 ''", "", 1},
        {"a\tb\" x", "1:1 73 'a\tb' 1:6 101 'x' 1:7 1 ''", "", 2},
        {"a\\]] x", "1:1 84 'a]' 1:6 101 'x' 1:7 1 ''", "", 3},
        {"a\\` x", "1:1 95 'a\\' 1:5 101 'x' 1:6 1 ''", "", 4},
    });
}

// Every byte where a token starts, in each kind of quotes, and in a comment.
TEST(Lexer, Bytes) {
    const std::string starts = "=<>~+-*/&(){}@;:^_,$|\"[` \t\r\n";
    const std::vector<std::string> quotes = {"\"\"73", "[]84", "``95"};
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const bool isWord = byte < 128 && (std::isalnum(byte) != 0);
        if (!isWord && starts.find(text) == std::string::npos) {
            checkScans({{"a" + text + "b", "1:1 101 'a' 1:3 101 'b' 1:4 1 ''", dropped(1, "")}});
        }
        for (const std::string& quote : quotes) {
            if (text != "\r" && text != "\n" && text[0] != quote[1] &&
                (text != "\\" || quote[0] == '`')) {
                checkScans({{quote[0] + text + quote[1],
                             "1:1 " + quote.substr(2) + " '" + text + "' 1:4 1 ''"}});
            }
        }
        if (text != "\n" && text != "\t") {
            checkScans({{"(*" + text + "*)a", "1:6 101 'a' 1:7 1 ''"}});
        }
    }
}

TEST(Lexer, FatalErrors) {
    const std::string comment = "Encountered EOF in comment; comment starts on line ";
    const std::string end = "Encountered comment end marker outside of comments.";
    std::vector<ScanCase> cases = {
        {"(* never closed", " threw 1:16 " + comment + "1, column 1." + atError("")},
        {"(* \t", " threw 1:9 " + comment + "1, column 1." + atError("")},
        {"(*)", " threw 1:4 " + comment + "1, column 1." + atError("")},
        {"a\n  (* b\n\tc *", "1:1 101 'a' threw 3:12 " + comment + "2, column 3." + atError("")},
        {"(* *)\t(*\n", " threw 2:1 " + comment + "1, column 9." + atError("")},
        {"x *)", "1:1 101 'x' threw 1:3 " + end + atError("*)")},
        {"(* (* *) *)", " threw 1:10 " + end + atError("*)")},
        {"**)", "1:1 15 '*' threw 1:2 " + end + atError("*)")},
        {"\n\"a\\tb\\\\\n",
         " threw 2:1 Encountered newline (\\n only) in string." + atError("a\tb\\\n")},
    };
    const Cases quotes = {
        {"\"", "string"}, {"[", "association string"}, {"`", "regular expression"}};
    const Cases lineEnds = {{"\r\n", "\\r\\n"}, {"\r", "\\r only"}, {"\n", "\\n only"}};
    for (const auto& [quote, name] : quotes) {
        const std::string thrown = "1:1 101 'x' threw 1:3 Encountered ";
        cases.push_back({"x " + quote + "ab", thrown + "EOF in " + name + "." + atError("ab")});
        for (const auto& [lineEnd, form] : lineEnds) {
            const std::string text = "ab" + lineEnd;
            const std::string message = "newline (" + form + ") in " + name + ".";
            cases.push_back({"x " + quote + text, thrown + message + atError(text)});
            cases.push_back({"x " + quote + text + "c", thrown + message + atError(text)});
        }
    }
    for (const int mode : {5, 6, 100}) {
        const std::string message = "Invalid automaton mode = " + std::to_string(mode) + " ";
        cases.push_back({"ab", " threw 1:1 " + message + atError(""), "", mode});
    }
    checkScans(cases);
}

/// Fails where there is something to do, and has nothing to say.
class SpeechlessLexer : public DLGLexer {
public:
    using DLGLexer::DLGLexer;

protected:
    Outcome act(int& /*number*/) override { fail(""); }
};

TEST(Lexer, HasASentenceForWhatHasNone) {
    DLGStringInput input("a\n");
    SpeechlessLexer lexer(&input);
    ColumnToken token;
    lexer.readToken(token);
    try {
        lexer.readToken(token);
        ADD_FAILURE() << "no exception";
    } catch (const ParseException& exception) {
        EXPECT_EQ(described(exception), "1:2 Syntax error" + atError("\n"));
    }
}

TEST(Lexer, Streams) {
    try {
        const DLGLexer lexer(nullptr);
        ADD_FAILURE() << "no exception";
    } catch (const OrvException& exception) {
        EXPECT_STREQ(exception.what(), "No input stream.");
    }

    testing::internal::CaptureStderr();
    DLGStringInput input("# a");
    DLGLexer lexer(&input);
    const ColumnToken tokenTemplate;
    for (const int number : {101, 1, 1, 1}) {  // the end comes again and again
        EXPECT_EQ(lexer.nextToken(tokenTemplate)->getNumber(), number);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), dropped(1, ""));
    EXPECT_EQ(lexer.lexicalErrorCount(), 1);
}

TEST(Lexer, Offsets) {
    const Cases cases = {
        {"", "0-0 "},
        {" ab\t-> c ", "1-3 4-6 7-8 9-9 "},
        {"\"\xC3\xA9\\t\" (* \xC3\xA9\n *) [a\\]]`b`", "0-6 17-22 22-25 25-25 "},
        {"1.x #y", "5-6 6-6 "},
    };
    for (const auto& [text, offsets] : cases) {
        std::string found;
        for (const TokenPtr& token : scan(text).tokens) {
            found += std::to_string(token->getOffset()) + "-" +
                     std::to_string(token->getEndOffset()) + " ";
        }
        EXPECT_EQ(found, offsets) << text;
    }
}

// Some tokens own their text, some borrow it; the ring grows where it is not at its beginning.
TEST(TokenBuffer, GivesTheTokensInOrderHoweverFarSomebodyLooks) {
    const std::string text = R"(a "b\\n" [c] "d\te" f "g\"h" i "j" k "l\rm" n "o\np" q)";
    std::vector<std::string> expected;
    for (const TokenPtr& token : scan(text).tokens) {
        expected.push_back(token->getText());
    }
    for (std::size_t before = 0; before < 5; ++before) {
        for (std::size_t ahead = 1; before + ahead <= expected.size(); ++ahead) {
            DLGStringInput input(text.c_str());
            DLGLexer lexer(&input);
            ColumnTokenBuffer buffer(lexer, 1, 2);
            const ColumnToken tokenTemplate;
            buffer.setTemplate(tokenTemplate);
            std::vector<std::string> taken;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                if (i == before) {
                    EXPECT_EQ(buffer.look(2).getText(), expected[i + 1]);
                    EXPECT_EQ(buffer.look(ahead).getText(), expected[i + ahead - 1]);
                }
                EXPECT_EQ(buffer.look().getText(), expected[i]);
                taken.push_back(buffer.take().getText());
            }
            EXPECT_EQ(taken, expected) << before << " " << ahead;
        }
    }
}

TEST(KeywordTable, FindsWholeWordsAlone) {
    const KeywordTable& table = *KeywordTable::instance();
    EXPECT_EQ(table.entries().size(), keywords.size());
    EXPECT_TRUE(std::is_sorted(table.entries().begin(), table.entries().end(),
                               [](const auto& l, const auto& r) { return l.word < r.word; }));
    for (const KeywordTable::Entry& keyword : keywords) {
        EXPECT_EQ(KeywordTable::lookup(keyword.word), keyword.tokenNumber) << keyword.word;
    }
    for (const char* const word : {"", "a", "an", "andy", "Let", "sor", "sortde", "zzz", "~"}) {
        EXPECT_EQ(KeywordTable::lookup(word), 101) << word;
    }
}

}  // namespace
