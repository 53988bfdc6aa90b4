// Every prefix of a text, and every byte in place of every other and before it: each compiles, or
// has errors that stand at tokens. Where tokens stand is counted here from the bytes alone, by
// other means than the lexer's. ATTACK_ALL=1 takes all of 200 texts instead of a tenth, and each
// through all entry points instead of one after the other.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "FuzzText.h"
#include "api/ExprParser.h"
#include "parser/SyntaxParser.h"
#include "support/Corpus.h"
#include "support/ParseException.h"

namespace {

bool isAll() { return std::getenv("ATTACK_ALL") != nullptr; }

using Places = std::set<std::pair<int, int>>;

/// Counts from the bytes of a text where its tokens and its end stand, up to the first token that
/// cannot be.
class TokenPlaces {
public:
    explicit TokenPlaces(std::string_view text) : text_(text.substr(0, text.find('\0'))) {
        while (!isOver_) {
            readToken();
        }
    }
    const Places& places() const { return places_; }

private:
    char at(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    bool isWordAt(std::size_t ahead) const {
        return at(ahead) == '_' || std::isalnum(static_cast<unsigned char>(at(ahead))) != 0;
    }
    bool isAnyOf(std::string_view bytes) const {
        return at_ < text_.size() && bytes.find(text_[at_]) != std::string_view::npos;
    }
    bool isDigitAt(std::size_t ahead) const { return at(ahead) >= '0' && at(ahead) <= '9'; }

    void begin() { places_.emplace(line_, column_); }
    // Behind this token, or at the end, there is nothing more.
    void beginLast() {
        begin();
        isOver_ = true;
    }
    void pass(std::size_t count) {
        at_ += count;
        column_ += static_cast<int>(count);
    }
    // To the column behind the next tab stop.
    void tab() { column_ = (column_ - 1) / 8 * 8 + 9; }
    void passBlank() {
        const char byte = text_[at_++];
        if (byte == '\n') {
            ++line_;
            column_ = 1;
        } else if (byte == '\t') {
            tab();
        } else {
            ++column_;
        }
    }

    void readToken() {
        const std::string_view quotes = "\"[`";
        if (at_ == text_.size()) {
            beginLast();
        } else if (isAnyOf(" \r\t\n")) {
            passBlank();
        } else if (text_.substr(at_, 2) == "(*") {
            passComment();
        } else if (text_.substr(at_, 2) == "*)") {
            beginLast();
        } else if (const std::size_t quote = quotes.find(at()); quote != std::string_view::npos) {
            readQuoted("\"]`"[quote]);
        } else {
            readPlain();
        }
    }

    void passComment() {
        pass(2);
        while (at_ < text_.size() && text_.substr(at_, 2) != "*)") {
            passBlank();
        }
        if (at_ == text_.size()) {
            beginLast();
        }
        pass(2);
    }

    // An escape that does not exist is dropped with what the token had so far: it begins behind it.
    void readQuoted(char closing) {
        std::pair<int, int> place(line_, column_);
        pass(1);
        while (at() != closing && at() != '\0' && at() != '\n' && at() != '\r') {
            const bool isEscape = at() == '\\' && closing != '`';
            pass(1);
            if (isEscape && at() != closing && !isAnyOf("\\nrt")) {
                drop();
                place = {line_, column_};
            } else if (isEscape) {
                passEscaped();
            }
        }
        places_.insert(place);
        isOver_ = at() != closing;
        pass(1);
    }

    void passEscaped() {
        const bool isTab = at() == 't';
        pass(1);
        if (isTab) {
            --column_;
            tab();
        }
    }

    // The byte at which a token broke off is dropped, whatever it is.
    void drop() { pass(at_ < text_.size() ? 1 : 0); }

    void readPlain() {
        static const std::vector<std::string_view> operators = {
            "~<>", "|=>", "=>", "<>", "<=", "~=", ">=", "->", "=", "<", ">", "+", "-",
            "*",   "/",   "&",  "(",  ")",  "{",  "}",  "@",  ";", ":", "^", ",", "$"};
        std::size_t length = 0;
        if (isDigitAt(0)) {
            readNumber();
        } else if (isWordAt(0)) {
            begin();
            for (; isWordAt(length); ++length) {
            }
            pass(length);
        } else {
            for (const std::string_view word : operators) {
                length =
                    length == 0 && text_.substr(at_, word.size()) == word ? word.size() : length;
            }
            if (length != 0) {
                begin();
                pass(length);
            } else {
                dropOperator();
            }
        }
    }

    void readNumber() {
        const std::pair<int, int> place(line_, column_);
        std::size_t length = 1;
        for (; isDigitAt(length); ++length) {
        }
        const bool isReal = at(length) == '.';
        if (isReal && !isDigitAt(length + 1)) {
            pass(length + 1);
            drop();
            return;
        }
        for (length += isReal ? 1 : 0; isDigitAt(length); ++length) {
        }
        places_.insert(place);
        pass(length);
    }

    // What has begun like "~<>" or "|=>" and is none is dropped with the byte behind it.
    void dropOperator() {
        for (const std::string_view beginning : {"~<", "~", "|=", "|"}) {
            if (text_.substr(at_, beginning.size()) == beginning) {
                pass(beginning.size());
                break;
            }
        }
        drop();
    }

    std::string_view text_;
    std::size_t at_ = 0;
    int line_ = 1;
    int column_ = 1;
    bool isOver_ = false;
    Places places_;
};

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

template <class Compile>
void attackEntryPoint(Compile compile, const std::string& text) {
    PlaceDialogs dialogs;  // the short-cut takes some texts that are no expressions
    const bool isCompiled = static_cast<bool>(compile(dialogs, text));
    ASSERT_EQ(isCompiled, dialogs.errors.empty()) << testing::PrintToString(text);
    if (!dialogs.errors.empty()) {
        const TokenPlaces counted(text);
        ASSERT_TRUE(std::includes(counted.places().begin(), counted.places().end(),
                                  dialogs.errors.begin(), dialogs.errors.end()))
            << testing::PrintToString(text);
    }
}

// Through the entry point of the number, or through all of them.
void attackEntryPoints(const std::string& text, std::size_t number) {
    if (isAll() || number % 3 == 0) {
        attackEntryPoint(ExprParser::parseAssociatedAttribute, text);
    }
    if (isAll() || number % 3 == 1) {
        attackEntryPoint(ExprParser::parseCondition, text);
    }
    if (isAll() || number % 3 == 2) {
        attackEntryPoint(ExprParser::parseComplexAssociation, text);
    }
}

// Compiles a text in a buffer that it fills to the last byte.
void attack(const std::string& text, std::size_t number) {
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
    attackEntryPoints(exact.get(), number);
}

std::size_t attackEveryByte(const std::string& seed) {
    std::size_t count = 0;
    for (std::size_t position = 0; position <= seed.size(); ++position) {
        attack(seed.substr(0, position), count++);
        for (int byte = 0; byte < 256 && !testing::Test::HasFatalFailure(); ++byte) {
            std::string inserted = seed;
            inserted.insert(position, 1, static_cast<char>(byte));
            attack(inserted, count++);
            if (position < seed.size()) {
                std::string replaced = seed;
                replaced[position] = static_cast<char>(byte);
                attack(replaced, count++);
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
    std::size_t count = 0;
    for (const std::string& prefix : prefixes) {
        for (int first = 0; first < 256 && !HasFatalFailure(); ++first) {
            const std::string begun = prefix + static_cast<char>(first);
            attack(begun, count++);
            for (const char second : std::string("a1\"\\]`*)>\n")) {
                attack(begun + second, count++);
                ASSERT_EQ(placesOf(begun + second), TokenPlaces(begun + second).places())
                    << testing::PrintToString(begun + second);
            }
        }
    }
    std::cerr.rdbuf(buffer);
}

// The tokens of a text up to the end, or to where it is no text of the language.
std::set<int> tokenNumbersOf(const std::string& text) {
    std::set<int> numbers;
    std::ostream silent(nullptr);
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input, DLGLexer::defaultBufferSize, silent);
    ColumnToken token;
    try {
        while (numbers.count(TOKEN_EOF) == 0) {
            lexer.readToken(token);
            numbers.insert(token.getNumber());
        }
    } catch (const ParseException&) {
        numbers.insert(TOKEN_EOF);
    }
    return numbers;
}

// The texts of the corpus that are the first with one of their tokens, then those of every outcome
// in turn, in an order that is always the same: short ones, `wanted` of them.
std::vector<std::string> seedTexts(std::size_t wanted) {
    constexpr std::size_t longest = 60;
    std::vector<std::string> seeds;
    std::set<int> numbers;
    std::map<CorpusOutcome, std::vector<std::string>> others;
    for (const CorpusText& row : corpus()) {
        const std::size_t known = numbers.size();
        numbers.merge(row.text.size() <= longest ? tokenNumbersOf(row.text) : std::set<int>());
        if (numbers.size() > known) {
            seeds.push_back(row.text);
        } else if (row.text.size() <= longest) {
            others[row.outcome].push_back(row.text);
        }
    }
    std::mt19937 random(1);
    for (auto& [outcome, texts] : others) {
        std::shuffle(texts.begin(), texts.end(), random);
    }
    for (std::size_t round = 0; seeds.size() < wanted && round < wanted; ++round) {
        for (const auto& [outcome, texts] : others) {
            if (round < texts.size() && seeds.size() < wanted) {
                seeds.push_back(texts[round]);
            }
        }
    }
    return seeds;
}

constexpr std::size_t seedCount = 200;

// Not a keyword and not an operator is missing, nor what becomes of a text.
TEST(Bytes, SeedsAreOfEveryKind) {
    std::set<std::string> seeds;
    std::set<int> numbers;
    for (const std::string& seed : seedTexts(seedCount)) {
        seeds.insert(seed);
        numbers.merge(tokenNumbersOf(seed));
    }
    EXPECT_EQ(seeds.size(), seedCount);
    for (const auto& [first, last] :
         {std::pair(TOKEN_EQUAL, TOKEN_BAR_ARROW), std::pair(TOKEN_FOR_ALL, TOKEN_BOOLEAN),
          std::pair(TOKEN_INTEGER_LITERAL, TOKEN_REAL_LITERAL),
          std::pair(TOKEN_VARIABLE_OR_FUNCTION, TOKEN_FALSE)}) {
        for (int number = first; number <= last; ++number) {
            EXPECT_EQ(numbers.count(number), 1U) << tokenName(number);
        }
    }
    std::map<CorpusOutcome, std::size_t> counts;
    for (const CorpusText& row : corpus()) {
        counts[row.outcome] += seeds.count(row.text);
    }
    EXPECT_EQ(counts.size(), 7U);
    for (const auto& [outcome, count] : counts) {
        EXPECT_GE(count, 10U) << static_cast<int>(outcome);
    }
}

// Of places past the largest number, the error has that number.
TEST(Bytes, PlacesEndAtTheLargestNumber) {
    if (!isAll()) {
        GTEST_SKIP() << "ATTACK_ALL is not set";
    }
    constexpr int largest = std::numeric_limits<int>::max();
    struct Row {
        std::size_t count;
        char byte;
        std::pair<int, int> place;
    };
    for (const Row& row :
         {Row{300'000'000, '\t', {1, largest}}, Row{200'000'000, '\t', {1, 1'600'000'001}},
          Row{2'200'000'000, '\n', {largest, 1}}, Row{2'200'000'000, ' ', {1, largest}}}) {
        PlaceDialogs dialogs;
        const std::string text = std::string(row.count, row.byte) + "1";
        EXPECT_FALSE(ExprParser::parseCondition(dialogs, text));
        EXPECT_EQ(dialogs.errors, Places{row.place})
            << row.count << testing::PrintToString(row.byte);
    }
}

TEST(Bytes, EachEndsInSuccessOrAtATokensPlace) {
    std::streambuf* const buffer = std::cerr.rdbuf(nullptr);  // where dropped characters go
    const std::vector<std::string> seeds = seedTexts(seedCount);
    const std::size_t step = isAll() ? 1 : 10;
    std::size_t count = 0;
    for (std::size_t i = 0; i < seeds.size() && !HasFatalFailure(); i += step) {
        count += attackEveryByte(seeds[i]);
    }
    std::cerr.rdbuf(buffer);
    std::cout << count << " texts from " << seeds.size() / step << " seeds\n";
    EXPECT_GT(count, 10'000U);
}

}  // namespace
