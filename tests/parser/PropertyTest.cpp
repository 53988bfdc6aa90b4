// Properties of the parser over all small expressions of a fixed vocabulary.
//
// Expressions are built from forms, whose operands are numbered holes. An operand may be any
// expression of at least the hole's level; others need parentheses:
//   0 "|=>"   1 quantifiers, let, if   2 implies   3 or   4 and   5 comparisons   6 sums
//   7 products   8 prefix operators   9 primaries
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "parser/ParseOutcome.h"

namespace {

struct Form {
    int level;
    std::string text;           // an operand stands where "%" does
    std::vector<int> operands;  // the levels that they need
};

const std::vector<Form> forms = {
    {0, "% |=> %", {1, 1}},
    {1, "for_all x in % => %", {0, 1}},
    {1, "let x = % in %", {0, 1}},
    {1, "if % then % else %", {0, 0, 1}},
    {2, "% implies %", {3, 2}},
    {3, "% or %", {3, 4}},
    {4, "% and %", {4, 5}},
    {5, "% = %", {6, 6}},
    {6, "% + %", {6, 7}},
    {6, "% - %", {6, 7}},
    {7, "% * %", {7, 8}},
    {8, "not %", {8}},
    {8, "-%", {8}},
    {9, "f %", {9}},
    {9, "string %", {9}},
    {9, "$n of %", {9}},
    {9, "(%, %)", {0, 0}},
    {9, "map {%} over %", {0, 9}},
    {9, "sort {%} & sortd {a} over %", {0, 9}},
    {9, "x -> ([a]{%} -> [b]; @l)", {0}},
};

// An expression with the parentheses that it needs, and with parentheses around every operand.
struct Text {
    int level;
    std::string minimal, full;
};

// The texts with a number of operators, from those with fewer: fills the holes from `hole` on.
void fill(const Form& form, std::size_t hole, int operators, const Text& begun,
          const std::vector<std::vector<Text>>& smaller, std::vector<Text>& texts) {
    if (hole == form.operands.size()) {
        if (operators == 0) {
            texts.push_back(begun);
        }
        return;
    }
    for (int count = 0; count <= operators; ++count) {
        for (const Text& operand : smaller[static_cast<std::size_t>(count)]) {
            Text next = begun;
            const bool bare = operand.level >= form.operands[hole];
            next.minimal.replace(next.minimal.find('%'), 1,
                                 bare ? operand.minimal : "(" + operand.minimal + ")");
            next.full.replace(next.full.find('%'), 1, "(" + operand.full + ")");
            fill(form, hole + 1, operators - count, next, smaller, texts);
        }
    }
}

// All texts of up to `operators` operators, by number of operators.
std::vector<std::vector<Text>> allTexts(int operators) {
    std::vector<std::vector<Text>> texts = {{{9, "a", "a"}}};
    for (int count = 1; count <= operators; ++count) {
        std::vector<Text> larger;
        for (const Form& form : forms) {
            fill(form, 0, count - 1, {form.level, form.text, form.text}, texts, larger);
        }
        texts.push_back(larger);
    }
    return texts;
}

TEST(ParserProperties, ParenthesesThatAreNotNeededChangeNothing) {
    std::unordered_set<std::string> trees;
    std::size_t count = 0;
    for (const std::vector<Text>& texts : allTexts(3)) {
        count += texts.size();
        for (const Text& text : texts) {
            const std::string tree = stripped(parse(text.minimal));
            ASSERT_EQ(tree.find("Specification("), 0U) << text.minimal << '\n' << tree;
            ASSERT_EQ(tree, stripped(parse(text.full))) << text.minimal << '\n' << text.full;
            trees.insert(tree);
        }
    }
    EXPECT_EQ(trees.size(), count);  // no two expressions have the same tree
}

// What comes of any text: a tree, or one message or exception at a token or the end.
void checkOutcome(const std::string& text) {
    const ParseOutcome outcome = parse(text);
    const std::size_t failures = outcome.messages.size() + (outcome.exception.empty() ? 0 : 1);
    ASSERT_EQ(failures, outcome.tree ? 0U : 1U) << text;
    if (outcome.tree) {
        return;
    }
    const std::string failure = outcome.messages.empty() ? outcome.exception : outcome.messages[0];
    const std::string place = failure.substr(0, failure.find(' '));
    const ScanOutcome tokens = scan(text);
    const bool isAtToken =
        std::any_of(tokens.tokens.begin(), tokens.tokens.end(), [&place](const TokenPtr& token) {
            return place ==
                   std::to_string(token->getLine()) + ":" + std::to_string(token->getColumn());
        });
    EXPECT_TRUE(isAtToken || failure == tokens.exception) << text << '\n' << failure;
}

TEST(ParserProperties, EveryTextEndsInATreeOrInOneFailureAtAToken) {
    std::vector<std::string> sample = {"let a = \"x\\ty\" (* b *) in\n\t[c\\]]{1.5 <= 20} ~= `d`",
                                       "this -> l:^_[a]{true} -> ([b]; @l -> ([c])) -> @m",
                                       "2147483647 |=> $name of x",
                                       "sort {()} & sortd {$a} over [b]"};
    for (const std::vector<Text>& texts : allTexts(2)) {
        for (std::size_t i = 0; i < texts.size(); i += 10) {
            sample.push_back(texts[i].minimal);
        }
    }
    const std::string bytes = "a1_ \t\n\r\"\\[]`(){}*/.~|<=>-$@:;,^#\xE9" + std::string(1, '\0');
    for (const std::string& text : sample) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            checkOutcome(text.substr(0, i));
            checkOutcome(text.substr(0, i) + text.substr(i + 1));
            for (const char byte : bytes) {
                std::string changed = text;
                changed[i] = byte;
                checkOutcome(changed);
            }
        }
    }
}

}  // namespace
