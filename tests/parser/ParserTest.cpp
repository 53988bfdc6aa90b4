// The parser: trees, precedence, positions, syntax errors, numbers, depth.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "parser/ParseOutcome.h"

namespace {

using std::string_literals::operator""s;
using Cases = std::vector<std::pair<std::string, std::string>>;

// The stripped tree, abbreviated to fit a row: fields stand without their names in the printer's
// order, what is absent or has its default is left out, a path without steps is its anchor, ">"
// stands ahead of a child and "|" ahead of a sibling.
std::string compact(const ParseOutcome& outcome) {
    std::string text = stripped(outcome);
    if (!outcome.tree) {
        return text;
    }
    const std::string path = "Path( anchor=";
    for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos; ++at) {
        const std::size_t comma = text.find(',', at);
        if (text.compare(comma, 20, ", association=none )") == 0) {
            text = text.erase(comma, 20).erase(at, path.size());
        }
    }
    for (const char* const value : {"isAscending=true", "label=\"\"", "addToResult=false",
                                    "condition=none", "child=none", "sibling=none"}) {
        text = replaced(text, std::string(", ") + value, "");
    }
    for (const char* const part :
         {"op=",   "lhs=",  "rhs=",       "expr=",     "name=",        "source=",    "test=",
          "then=", "else=", "path=",      "function=", "predicate=",   "keys=",      "anchor=",
          "{ ",    " }",    "Expression", "Constant",  "association=", "Association"}) {
        text = replaced(text, part, "");
    }
    text = replaced(replaced(text, ", child=", " > "), ", sibling=", " | ");
    text = replaced(replaced(text, "Definition", "step"), "Reference", "label");
    text = replaced(replaced(text, "( ", "("), " )", ")");
    return text.substr(14, text.size() - 15);  // within "Specification(" and ")"
}

void checkTrees(const Cases& cases) {
    for (const auto& [text, tree] : cases) {
        const ParseOutcome outcome = parse(text);
        EXPECT_EQ(compact(outcome), tree) << text;
        EXPECT_TRUE(outcome.messages.empty()) << text;
    }
}

// Every text in every context: "%" stands for the text, and for its tree.
Cases combined(const Cases& contexts, const Cases& texts) {
    Cases cases;
    for (const auto& [context, contextTree] : contexts) {
        for (const auto& [text, tree] : texts) {
            cases.emplace_back(replaced(context, "%", text), replaced(contextTree, "%", tree));
        }
    }
    return cases;
}

TEST(Parser, PrimariesInTheirContexts) {
    checkTrees(combined(
        {
            {"%", "%"},
            {"(%)", "%"},
            {"f %", R"(Application("f", %))"},
            {"real %", R"(Application("real", %))"},
            {"$m of %", R"(Application("attribute", Tuple(String("m"), %)))"},
            {"not - %", "Unary(NOT, Unary(MINUS, %))"},
            {"% + b * %", "Binary(ADD, %, Binary(MULTIPLY, b, %))"},
            {"map {%} over %", "Map(%, %)"},
            {"filter {%} over %", "Filter(%, %)"},
            {"traverse {%} over %", "Traverse(%, %)"},
            {"sort {%} & sortd {%} & sort {a} over %",
             "Sort(SortKey(%), SortKey(%, isAscending=false), SortKey(a), %)"},
        },
        {
            {"a", "a"},
            {"()", "Unit()"},
            {"(a, 1, (b, c))", "Tuple(a, Integer(1), Tuple(b, c))"},
            {"007", "Integer(7)"},
            {"1.50", "Real(1.5)"},
            {R"("a\"\tb")", "String(\"a\"\tb\")"},
            {R"(`a\d`)", R"(RegExp("a\d"))"},
            {"true", "Boolean(1)"},
            {"false", "Boolean(0)"},
            {"$n", R"(Application("attribute", Tuple(String("n"), current)))"},
            {"$ n of this", R"(Application("attribute", Tuple(String("n"), this)))"},
            {"$n of x -> [a]",
             R"(Application("attribute", Tuple(String("n"), Path(x, step("a")))))"},
            {"string integer a", R"(Application("string", Application("integer", a)))"},
            {"g a b", R"(Application("g", Application("a", b)))"},
            {"sortd {a} over b", "Sort(SortKey(a, isAscending=false), b)"},
            {"current", "current"},
            {"model", "model"},
            {"[a]", R"(Path(current, step("a")))"},
            {"this -> [a]", R"(Path(this, step("a")))"},
            {"x:[a]", R"(Path(current, step("a", label="x")))"},
            {"l:^_[a]{b} -> @l",
             R"(Path(current, step("a", label="l", addToResult=true, condition=b > label("l"))))"},
            {"_[a]", R"(Path(current, step("a")))"},
            {"@l -> [a]", R"(Path(current, label("l" > step("a"))))"},
        }));
}

TEST(Parser, Expressions) {
    checkTrees({
        {"for_all x in a => b", R"(UniversalQuantifier("x", a, b))"},
        {"there_exists x in a => b", R"(ExistentialQuantifier("x", a, b))"},
        {"let x = a = b in c = d", R"(Let("x", Relational(EQUAL, a, b), Relational(EQUAL, c, d)))"},
        {"let x = a in b |=> c", R"(Application("alternation", Tuple(Let("x", a, b), c)))"},
        {"if a then b else c implies d", "If(a, b, Binary(IMPLIES, c, d))"},
        {"if t then x |=> y else z", R"(If(t, Application("alternation", Tuple(x, y)), z))"},
        {"if t then x else y |=> z", R"(Application("alternation", Tuple(If(t, x, y), z)))"},
        {"f - a", "Binary(SUBTRACT, f, a)"},
        {"00000000002147483647", "Integer(2147483647)"},
        {std::string("1").append(308, '0') + ".0", "Real(1e+308)"},
        {std::string("0.").append(323, '0') + "5", "Real(4.94066e-324)"},
        {std::string("0.").append(400, '0') + "1", "Real(0)"},
    });
    // Characters that the lexer drops stop nothing.
    const ParseOutcome outcome = parse("a # + b\n %");
    EXPECT_EQ(compact(outcome), "Binary(ADD, a, b)");
    EXPECT_EQ(outcome.dropped,
              "invalid token near line 1 (text was '')\n"
              "invalid token near line 2 (text was '')\n");
}

// Alternatives of a group are siblings, and what follows the group is a child of each one's last
// step. Those that begin with a reference come last, otherwise the order is kept.
TEST(Parser, Groups) {
    checkTrees({
        {"x -> ([a])", R"(Path(x, step("a")))"},
        {"x -> ([a]; l:[b]; [c])", R"(Path(x, step("a" | step("b", label="l" | step("c")))))"},
        {"[x] -> ([a]; [b])", R"(Path(current, step("x" > step("a" | step("b")))))"},
        {"x -> ([a]; [b]) -> [c]", R"(Path(x, step("a" > step("c") | step("b" > step("c")))))"},
        {"x -> ([a] -> [b]; [c]) -> [d]",
         R"(Path(x, step("a" > step("b" > step("d")) | step("c" > step("d")))))"},
        {"x -> ([a] -> ([b]; [c]); [d]) -> [e]",
         R"(Path(x, step("a" > step("b" > step("e") | step("c" > step("e"))) )"
         R"(| step("d" > step("e")))))"},
        {"x -> (([a]; [b]) -> [c]; [d])",
         R"(Path(x, step("a" > step("c") | step("b" > step("c") | step("d")))))"},
        {"x -> (([a]; [b]); [c]) -> [d]",
         R"(Path(x, step("a" > step("d") | step("b" > step("d") | step("c" > step("d"))))))"},
        {"x -> (@l; [a]; @m; [b])", R"(Path(x, step("a" | step("b" | label("l" | label("m"))))))"},
        {"x -> (@l -> [b]; [a] -> @m)",
         R"(Path(x, step("a" > label("m") | label("l" > step("b")))))"},
        {"x -> (@l; [a]) -> [b]", R"(Path(x, step("a" > step("b") | label("l" > step("b")))))"},
        {"x -> ((@l; [a]); [b])", R"(Path(x, step("a" | step("b" | label("l")))))"},
        {"x -> ((@l; @m); [a])", R"(Path(x, step("a" | label("l" | label("m")))))"},
    });

    // The step after a group is one node.
    const auto first = [](const ParseOutcome& outcome) {
        return dynamic_cast<const PathNode&>(*outcome.tree->getExpr()).getAssociation();
    };
    const AssociationPtr a = first(parse("x -> ([a] -> [b]; [c]; @l) -> [d] -> [e]"));
    const AssociationPtr& c = a->getSibling();
    EXPECT_EQ(a->getChild()->getChild().get(), c->getChild().get());
    EXPECT_EQ(c->getSibling()->getChild().get(), c->getChild().get());
    // Two to the power of 200 ways lead through these groups.
    std::string text = "x";
    for (int i = 0; i < 200; ++i) {
        text += " -> ([a]; [b])";
    }
    EXPECT_TRUE(parse(text).tree);

    // The printer leaves the depth-first marker out.
    const auto isDepthFirst = [&first](const char* path) {
        const AssociationPtr step = first(parse(path));
        return dynamic_cast<DefinitionAssociationNode&>(*step).getDepthFirstEvaluation();
    };
    for (const char* const path : {"_[a]", "^_[a]", "l : ^ _ [a]", "x -> (_[a])"}) {
        EXPECT_TRUE(isDepthFirst(path)) << path;
    }
    for (const char* const path : {"[a]", "^[a]", "_a:[a]", "[a] -> _[b]"}) {
        EXPECT_FALSE(isDepthFirst(path)) << path;
    }
}

// Every two binary operators in one text: which of them takes the other for its operand.
TEST(Parser, PrecedencePairByPair) {
    struct Operator {
        std::string text;
        int level;
        char grouping;
        std::string name;
        std::string tree(const std::string& left, const std::string& right) const {
            return level == 0 ? "Application(\"alternation\", Tuple(" + left + ", " + right + "))"
                              : (level == 4 ? "Relational(" : "Binary(") + name + ", " + left +
                                    ", " + right + ")";
        }
    };
    const std::vector<Operator> operators = {{"|=>", 0, 'n', ""},
                                             {"implies", 1, 'r', "IMPLIES"},
                                             {"or", 2, 'l', "OR"},
                                             {"and", 3, 'l', "AND"},
                                             {"=", 4, 'n', "EQUAL"},
                                             {"<>", 4, 'n', "NOT_EQUAL"},
                                             {"~=", 4, 'n', "REGEXP_EQUAL"},
                                             {"~<>", 4, 'n', "REGEXP_NOT_EQUAL"},
                                             {"<", 4, 'n', "LESS"},
                                             {"<=", 4, 'n', "LESS_EQUAL"},
                                             {">", 4, 'n', "GREATER"},
                                             {">=", 4, 'n', "GREATER_EQUAL"},
                                             {"+", 5, 'l', "ADD"},
                                             {"-", 5, 'l', "SUBTRACT"},
                                             {"*", 6, 'l', "MULTIPLY"},
                                             {"/", 6, 'l', "DIVIDE"}};
    Cases cases;
    for (const Operator& first : operators) {
        for (const Operator& second : operators) {
            const std::string start = "a " + first.text + " b ";
            const std::string text = start + second.text + " c";
            const char grouping = first.level > second.level   ? 'l'
                                  : first.level < second.level ? 'r'
                                                               : first.grouping;
            if (grouping == 'n') {
                const ParseOutcome outcome = parse(text);
                const std::string place = "1:" + std::to_string(start.size() + 1) + " ";
                EXPECT_FALSE(outcome.tree) << text;
                ASSERT_EQ(outcome.messages.size(), 1U) << text;
                EXPECT_EQ(outcome.messages[0].find(place), 0U) << text << outcome.messages[0];
            } else {
                cases.emplace_back(text, grouping == 'l' ? second.tree(first.tree("a", "b"), "c")
                                                         : first.tree("a", second.tree("b", "c")));
            }
        }
        // Prefix operators take the nearest operand on either side.
        cases.emplace_back("not a " + first.text + " b", first.tree("Unary(NOT, a)", "b"));
        cases.emplace_back("a " + first.text + " not b", first.tree("a", "Unary(NOT, b)"));
        cases.emplace_back("-a " + first.text + " -b",
                           first.tree("Unary(MINUS, a)", "Unary(MINUS, b)"));
    }
    checkTrees(cases);
}

// The positions of the nodes, in the order in which they are printed.
TEST(Parser, Positions) {
    const Cases cases = {
        {"\n  a", "2:3 2:3 "},
        {"a\n + b", "1:1 2:2 1:1 2:4 "},
        {"(a - b) * c implies d", "1:1 1:13 1:9 1:4 1:2 1:6 1:11 1:21 "},
        {"a <= not b", "1:1 1:3 1:1 1:6 1:10 "},
        {"a |=> b", "1:1 1:3 1:3 1:1 1:7 "},
        {"f (1, 1.5, \"\", ``, true)", "1:1 1:1 1:3 1:4 1:7 1:12 1:16 1:20 "},
        {"$n of x", "1:1 1:1 1:1 1:2 1:7 "},
        {"string map {a} over b", "1:1 1:1 1:8 1:13 1:21 "},
        {"filter {a} over sortd {b} & sort {c} over d", "1:1 1:1 1:9 1:17 1:24 1:35 1:43 "},
        {" traverse {a} over b", "1:2 1:2 1:12 1:20 "},
        {"(for_all x in a => let y = b in c)", "1:1 1:2 1:15 1:20 1:28 1:33 "},
        {"if a then b else there_exists z in c => d", "1:1 1:1 1:4 1:11 1:18 1:36 1:41 "},
        {"[a] -> ([b]; @l) -> ^[c]", "1:1 1:1 1:1 1:9 1:21 1:14 1:21 "},
        {"this ->\tl:_[b]{c}", "1:1 1:1 1:9 1:16 "},
    };
    for (const auto& [text, positions] : cases) {
        const ParseOutcome outcome = parse(text);
        ASSERT_TRUE(outcome.tree) << text;
        const std::string tree = printed(*outcome.tree);
        std::string found;
        for (std::size_t at = 0; (at = tree.find("@[", at)) != std::string::npos; ++at) {
            found += tree.substr(at + 2, tree.find(']', at) - at - 2) + " ";
        }
        EXPECT_EQ(found, positions) << text;
    }
}

TEST(Parser, SyntaxErrors) {
    struct Case {
        std::string text, place, found, expected;  // "'" stands for a double quote
    };
    const std::string end = "end of the text";
    std::vector<Case> cases = {
        {"", "1:1", end, "expression"},
        {"  \n (* *) ", "2:8", end, "expression"},
        {"1 +", "1:4", end, "expression"},
        {"1 2", "1:3", "'2'", end},
        {"a & b", "1:3", "'&'", "operator"},
        {"a = b = \"open", "1:7", "'='", "operator"},
        {"(a", "1:3", end, "')'"},
        {"(a, )", "1:5", "')'", "expression"},
        {"([a]; [b])", "1:5", "';'", "')'"},
        {"for_all in a => b", "1:9", "'in'", "name"},
        {"there_exists x a", "1:16", "'a'", "'in'"},
        {"for_all x in a b", "1:17", end, "'=>'"},
        {"let x a in b", "1:7", "'a'", "'='"},
        {"let x = 1 b", "1:11", "'b'", "'in'"},
        {"if 1 else 2", "1:6", "'else'", "'then'"},
        {"$", "1:2", end, "name"},
        {"$true", "1:2", "'true'", "name"},
        {"$a of -b", "1:7", "'-'", "expression"},
        {"a |=> b |=> c", "1:9", "'|=>'", "takes two operands: put two of them in parentheses."},
        {"1 \"b\"", "1:3", "the string 'b'", end},
        {"f not a", "1:3", "'not'", "operator"},
        {"traverse a over b", "1:10", "'a'", "'{'"},
        {"filter {} over b", "1:9", "'}'", "expression"},
        {"map {a} b", "1:9", "'b'", "'over'"},
        {"sort {a} & over b", "1:12", "'over'", "'sort"},
        {"sort {a} sort", "1:10", "'sort'", "'over'"},
        {"this -> a", "1:10", end, "':'"},
        {"this ->", "1:8", end, "association name"},
        {"x -> ([a]; )", "1:12", "')'", "association name"},
        {"x -> ([a] [b])", "1:11", "'b'", "')'"},
        {"_^[a]", "1:2", "'^'", "association name"},
        {"@[a]", "1:2", "'a'", "name"},
        {"[a]{b", "1:6", end, "'}'"},
        {"this [a]", "1:6", "'a'", end},
        {"(a) -> [b]", "1:5", "'->'", end},
    };
    // Constructs without parentheses that stand where an operand does.
    for (const std::string& construct : {"if a then b else c"s, "let x = a in b"s,
                                         "for_all x in a => b"s, "there_exists x in a => b"s}) {
        const std::string word = "'" + construct.substr(0, construct.find(' ')).append("'");
        for (const std::string& start :
             {"not "s, "- "s, "a implies "s, "a or "s, "a and "s, "a = "s, "a + "s, "a * "s,
              "string "s, "$a of "s, "map {a} over "s, "sort {a} over "s, "a |=> b or "s}) {
            const std::string place = "1:" + std::to_string(start.size() + 1);
            cases.push_back({start + construct, place, word, "parentheses"});
        }
    }
    for (const Case& c : cases) {
        const ParseOutcome outcome = parse(c.text);
        EXPECT_FALSE(outcome.tree) << c.text;
        ASSERT_EQ(outcome.messages.size(), 1U) << c.text << outcome.exception;
        const std::string message = replaced(outcome.messages[0], "\"", "'");
        EXPECT_EQ(message.find(c.place + " ExprParser 3 "), 0U) << c.text << ": " << message;
        EXPECT_NE(message.find(c.found), std::string::npos) << c.text << ": " << message;
        EXPECT_NE(message.find(c.expected), std::string::npos) << c.text << ": " << message;
    }
}

TEST(Parser, NumbersTooLarge) {
    const std::string nines(400, '9');
    const std::vector<std::pair<std::string, std::size_t>> cases = {
        {"2147483648", 1},           {"a + -2147483648", 6},       {"f 99999999999999999999", 3},
        {"18446744073709551617", 1}, {"0000004294967296", 1},      {nines + " 4294967296", 1},
        {nines + ".5", 1},           {"(1.5, " + nines + ".0)", 7}};
    for (const auto& [text, column] : cases) {
        const ParseOutcome outcome = parse(text);
        EXPECT_TRUE(!outcome.tree && outcome.messages.empty()) << text;
        const std::string place = "1:" + std::to_string(column) + " ";
        EXPECT_EQ(outcome.exception.find(place), 0U) << text << outcome.exception;
        const std::string quoted = '"' + text.substr(column - 1, 10);  // or more of it
        EXPECT_NE(outcome.exception.find(quoted), std::string::npos) << text << outcome.exception;
    }
}

// A text that nests: `open` and `close` any number of times around `middle`.
struct Nesting {
    std::string head, open, middle, close, tail;
    std::string within = {};  // what of `open` stands ahead of the token that begins the level
    int deepest = 1000;

    std::string text(int times) const {
        std::string text = head;
        for (int i = 0; i < times; ++i) {
            text += open;
        }
        text += middle;
        for (int i = 0; i < times; ++i) {
            text += close;
        }
        return text + tail;
    }
};

const std::vector<Nesting> nestings = {
    {"", "(", "a", ")", ""},
    {"", "(a, ", "a", ")", ""},
    {"", "not ", "a", "", ""},
    {"", "- ", "a", "", ""},
    {"", "f ", "a", "", "", "f "},
    {"", "string ", "a", "", "", "string "},
    {"", "$n of ", "a", "", "", "$n of "},
    {"", "map {", "a", "} over b", "", "map {"},
    {"", "map {a} over ", "b", "", "", "map {"},
    {"", "sort {a} & sortd {", "a", "} over b", "", "sort {"},
    {"", "sort {a} over ", "b", "", "", "sort {"},
    {"", "for_all x in ", "a", " => b", "", "for_all x in "},
    {"", "for_all x in a => ", "b", "", "", "for_all x in "},
    {"", "let x = ", "a", " in b", "", "let x = "},
    {"", "let x = a in ", "b", "", "", "let x = "},
    {"", "if ", "a", " then b else c", "", "if "},
    {"", "if a then ", "b", " else c", "", "if "},
    {"", "if a then b else ", "c", "", "", "if "},
    {"", "a implies ", "b", "", "", "a "},
    {"x", " -> [a]", "", "", "", " -> "},
    // A step within counts as well as what holds it: an alternative, a condition.
    {"x -> ", "(", "[a]", ")", "", "(", 999},
    {"x -> ([a]", "; [a]", "", "", ")", "; ", 998},
    {"", "[a]{", "b", "}", "", "", 500},
};

const std::string tooDeep = "Expression is nested too deeply.";

TEST(Parser, DepthLimit) {
    for (const Nesting& nesting : nestings) {
        const ParseOutcome deepest = parse(nesting.text(nesting.deepest));
        EXPECT_EQ(stripped(deepest).find("Specification("), 0U)
            << nesting.open << stripped(deepest);

        const ParseOutcome beyond = parse(nesting.text(nesting.deepest + 1));
        const std::size_t column = nesting.head.size() + nesting.within.size() + 1 +
                                   nesting.open.size() * static_cast<std::size_t>(nesting.deepest);
        EXPECT_EQ(beyond.exception, "1:" + std::to_string(column) + " " + tooDeep) << nesting.open;
        EXPECT_TRUE(!beyond.tree && beyond.messages.empty()) << nesting.open;
    }
}

TEST(Parser, SmallStackLimitsDepth) {
    for (const Nesting& nesting : nestings) {
        const auto body = [&nesting] {
            const ParseOutcome outcome = parse(nesting.text(nesting.deepest));
            EXPECT_TRUE(outcome.tree || outcome.exception.find(tooDeep) != std::string::npos)
                << nesting.open << stripped(outcome);
        };
        EXPECT_TRUE(runOnStack(256 * 1024, body));
    }
}

TEST(Parser, LongChainsNeedLittleStack) {
    const std::vector<std::string> operators = {" + ", " - ", " * ", " / ", " and ", " or "};
    std::string text = "a";
    std::uint32_t state = 1;
    for (int operands = 1; operands < 100000; ++operands) {
        state = state * 1664525U + 1013904223U;
        text += operators[(state >> 16U) % operators.size()] + "a";
    }
    const auto body = [&text] {
        const std::string tree = stripped(parse(text));
        std::size_t paths = 0;
        for (std::size_t at = 0; (at = tree.find("Path(", at)) != std::string::npos; ++at) {
            ++paths;
        }
        EXPECT_EQ(paths, 100000U);
    };
    EXPECT_TRUE(runOnStack(1024 * 1024, body));
}

}  // namespace
