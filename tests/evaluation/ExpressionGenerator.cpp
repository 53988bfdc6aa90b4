// Expressions grow from patterns, one for each construct and built-in: the level of the expression,
// a blank, and its text. In a text "?" begins a placeholder: a type letter and a level for an
// operand ("?B4"; "?W" is the wanted type, "?X" any, "?K" that of a sort key), "?P" for a path,
// "?n" for a new variable, "?d" to declare it for the rest of the pattern, "?o" for a variable that
// is an object, any other character for one of its words. The size that is left is shared out among
// the operands; an operand without size is a leaf.
#include "evaluation/ExpressionGenerator.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace {

using Words = std::vector<const char*>;

const std::map<char, Words> leaves = {
    {'B', {"9 true", "9 false", "5 integer $v > 0", "5 $?a = $?a of this"}},
    {'I', {"9 ?i", "9 ?i", "9 integer $v"}},
    {'R', {"9 ?r", "9 ?r", "7 0.0 / real size [?c]"}},
    {'S', {"9 ?s", "9 $?a", "9 $?a of ?o"}},
    {'O', {"9 ?o"}},
    {'C', {"9 [?c]", "9 [?c]", "9 ?o -> [?c]"}},
    {'T', {"9 map { $?a } over [?c]"}}};

const Words anyType = {"1 if ?B0 then ?W0 else ?W1", "1 let ?n = ?X0 in ?d?W1"};

const std::map<char, Words> patterns = {
    {'B',
     {"8 not ?B8", "4 ?B4 and ?B5", "3 ?B3 or ?B4", "2 ?B3 implies ?B2",
      "1 for_all ?n in ?C0 => ?d?B1", "1 there_exists ?n in ?C0 => ?d?B1", "5 ?S6 ?< ?S6",
      "5 ?I6 ?< ?I6", "5 ?R6 ?< ?R6", "5 ?C6 ?< ?C6", "5 ?B6 ?= ?B6", "5 ?O6 ?= ?O6",
      "5 uid first ?C9 ?< ?S6", "5 ?S6 ?~ ?S6", "5 ?S6 ?~ ?q", "9 match (`?p`, ?S0)",
      "9 boolean ?X9"}},
    {'I', {"8 - ?I8", "6 ?I6 ?+ ?I7", "7 ?I7 ?* ?I8", "9 size ?C9", "9 integer ?X9"}},
    {'R', {"8 - ?R8", "6 ?R6 ?+ ?R7", "7 ?R7 ?* ?R8", "9 real ?X9"}},
    {'S',
     {"9 $?a of ?O9", "9 $?a of ?C9", "9 attribute (?S0, ?O0)", "9 attribute (?S0, ?C0)",
      "9 ?j ?O9", "9 ?j ?O9", "9 ?z ?T9", "9 ?z ?T9", "9 delim (?S0, ?T0)", "6 ?S6 + ?S7",
      "0 ?S1 |=> ?S1", "9 alternation (?S0, ?S0)", "9 find (`?p`, ?S0)", "9 ?f (`?p`, ?S0, ?S0)",
      "9 ?f (`?p`, ?S0, ?t)", "9 ?u ?S9", "9 ?u ?S9", "9 string ?X9"}},
    {'O', {"9 ?x ?C9"}},
    {'C',
     {"9 ?P", "9 ?P", "9 ?P", "9 ?P", "9 filter { ?B0 } over ?C9", "9 filter { ?B0 } over ?C9",
      "9 traverse { ?C0 } over ?C9", "9 traverse { ?C0 } over ?C9", "9 ?k { ?K0 } over ?C9",
      "9 ?k { ?K0 } & ?k { ?K0 } over ?C9", "9 ?y ?C9", "9 ?y ?C9", "9 all ?l", "9 all ?S9"}},
    {'T', {"9 map { ?S0 } over ?C9"}}};

const Words stepTexts = {"[?c]",
                         "[?c]",
                         "[?c] { ?B0 }",
                         "[?c] { size ?P ?< size ?P }",
                         "[?c] { there_exists ?n in ?P => ?d?B1 }",
                         "[?c] { let ?n = ?X0 in ?d?B1 }"};

const std::map<char, Words> words = {
    {'n', {"x", "y", "size", "l"}},
    {'i', {"0", "1", "2", "3", "10", "65536", "2147483647"}},
    {'r', {"0.0", "1.0", "2.5", "0.1", "12.0", "3000000000.0"}},
    {'s',
     {R"("")", R"("a")", R"("name")", R"("v")", R"("12")", R"("-7")", R"("1e3")", R"("true")",
      R"("x Y")", "\"\xc3\xa9\\\"\\n\\\\\"", R"("\t z ")", R"("(")", R"("Leaf")"}},
    {'p',
     {"a*", "(a|b)(\\d)?", "^", "$", ".", "\\d+", "[^a-z]", "(?i)E", "\xc3\xa9", "b|", "\\b", "",
      "(o)(n)", "o.*e"}},
    {'q',
     {R"("a*")", R"("[0-9]$")", R"("^.$")", R"("\\d+")", R"("\\b")", R"("")", R"("(?i)E")",
      R"("(o")", R"("*")"}},
    {'t', {R"("")", R"("<\\0>")", R"("\\1\\2")", R"("\\\\0\\9\\x")", R"("--")"}},
    {'f', {"replace", "replace_all"}},
    {'j', {"class", "uid", "opSig"}},
    {'u', {"tolower", "toupper", "trim", "escape"}},
    {'x', {"first", "only", "object"}},
    {'y', {"unique", "unique_stable", "reverse"}},
    {'z', {"comma", "concat"}},
    {'a', {"name", "type", "v", "w", "v", "w", "none"}},
    {'c', {"a", "b", "c", "a", "b", "parameter", "none"}},
    {'l', {R"("Node")", R"("Leaf")", R"("Operation")", R"("node")"}},
    {'k', {"sort", "sortd"}},
    {'m', {"", "", "", "^", "^", "_", "^_"}},
    {'<', {"=", "<>", "<", "<=", ">", ">="}},
    {'=', {"=", "<>"}},
    {'~', {"~=", "~<>"}},
    {'+', {"+", "-"}},
    {'*', {"*", "/"}}};

bool isOperand(char kind) { return std::isupper(static_cast<unsigned char>(kind)) != 0; }

int countOperands(const char* pattern) {
    int count = 0;
    for (; *pattern != '\0'; ++pattern) {
        count += pattern[0] == '?' && isOperand(pattern[1]) ? 1 : 0;
    }
    return count;
}

void append(ExpressionTree& tree, const std::string& text) { tree.pieces.back() += text; }

}  // namespace

std::string ExpressionTree::text() const {
    std::string result = pieces[0];
    for (std::size_t i = 0; i < operands.size(); ++i) {
        const std::string operand = operands[i].text();
        result +=
            (operands[i].level < operandLevels[i] ? "(" + operand + ")" : operand) + pieces[i + 1];
    }
    return result;
}

std::vector<ExpressionTree*> ExpressionTree::subtrees() {
    std::vector<ExpressionTree*> trees = {this};
    for (ExpressionTree& operand : operands) {
        const std::vector<ExpressionTree*> below = operand.subtrees();
        trees.insert(trees.end(), below.begin(), below.end());
    }
    return trees;
}

ExpressionTree leafOf(TypeLetter type) {
    static const std::string texts[] = {
        "true", "1", "1.5", "\"a\"", "this", "[a]", "map { $v } over [a]"};
    return {type, 9, {texts[std::string("BIRSOCT").find(type)]}, {}, {}};
}

ExpressionTree ExpressionGenerator::generate(TypeLetter type, int size) {
    ExpressionTree tree;
    tree.type = type;
    const std::vector<std::string> variables = variablesOf(type);
    if (!variables.empty() && chance(size <= 0 ? 2 : 6)) {
        append(tree, variables[pick(variables.size())]);
        return tree;
    }
    const Words& choices = size <= 0 ? leaves.at(type) : chance(5) ? anyType : patterns.at(type);
    const char* pattern = choices[pick(choices.size())];
    tree.level = pattern[0] - '0';
    expand(tree, pattern + 2, size - 1);
    return tree;
}

/// The variables of a type that no variable further in hides.
std::vector<std::string> ExpressionGenerator::variablesOf(TypeLetter type) const {
    std::vector<std::string> names;
    for (auto it = variables_.rbegin(); it != variables_.rend(); ++it) {
        const bool isHidden = std::any_of(variables_.rbegin(), it, [it](const Variable& inner) {
            return inner.first == it->first;
        });
        if (it->second == type && !isHidden) {
            names.push_back(it->first);
        }
    }
    return names;
}

void ExpressionGenerator::expand(ExpressionTree& tree, const char* pattern, int size) {
    const std::size_t declared = variables_.size();
    Variable variable = {"", 'O'};
    int operandsLeft = countOperands(pattern);
    for (; *pattern != '\0'; ++pattern) {
        if (*pattern != '?') {
            append(tree, std::string(1, *pattern));
            continue;
        }
        const char kind = *++pattern;
        if (!isOperand(kind)) {
            placeholder(tree, kind, variable);
            continue;
        }
        const int share =
            --operandsLeft > 0 ? static_cast<int>(pick(static_cast<std::size_t>(size + 1))) : size;
        size -= share;
        if (kind == 'P') {
            addPath(tree, share);
            continue;
        }
        const TypeLetter type = kind == 'W'   ? tree.type
                                : kind == 'X' ? "BIRSOCT"[pick(variable.first.empty() ? 4 : 7)]
                                : kind == 'K' ? "BIRS"[pick(4)]
                                              : kind;
        if (kind == 'X') {
            variable.second = type;
        }
        addOperand(tree, type, *++pattern - '0', share);
    }
    variables_.resize(declared);
}

void ExpressionGenerator::placeholder(ExpressionTree& tree, char kind, Variable& variable) {
    if (kind == 'd') {
        variables_.push_back(variable);
    } else if (kind == 'o') {
        std::vector<std::string> objects = variablesOf('O');
        objects.insert(objects.end(), {"this", "current", "model"});
        append(tree, objects[pick(objects.size())]);
    } else {
        const Words& choices = words.at(kind);
        const char* word = choices[pick(choices.size())];
        variable.first = kind == 'n' ? word : variable.first;
        append(tree, word);
    }
}

void ExpressionGenerator::addOperand(ExpressionTree& tree, TypeLetter type, int level, int size) {
    ExpressionTree operand = generate(type, size);
    tree.operands.push_back(std::move(operand));
    tree.operandLevels.push_back(chance(10) ? 10 : level);
    tree.pieces.emplace_back();
}

// --- paths --------------------------------------------------------------------------------------

/// Steps, and at the end one for each label that none of them declared.
void ExpressionGenerator::addPath(ExpressionTree& tree, int size) {
    const bool isAnchored = !chance(3);
    if (isAnchored) {
        expand(tree, "?o -> ", 0);
    }
    Labels labels;
    for (const char* label : {"l", "m"}) {
        if (chance(2)) {
            labels.all.emplace_back(label);
        }
    }
    labels.open = labels.all;
    labels_.push_back(labels);
    addChain(tree, size + 1, isAnchored);
    while (!labels_.back().open.empty()) {
        append(tree, " -> ");
        addDefinition(tree, 0);
    }
    labels_.pop_back();
}

void ExpressionGenerator::addChain(ExpressionTree& tree, int size, bool mayBeGroup) {
    const int count = 1 + static_cast<int>(pick(3));
    for (int i = 0; i < count; ++i) {
        append(tree, i > 0 ? " -> " : "");
        addStep(tree, size / count, mayBeGroup || i > 0);
    }
}

void ExpressionGenerator::addStep(ExpressionTree& tree, int size, bool mayBeGroup) {
    if (chance(4)) {
        const bool isOuter = chance(3);
        const Labels& labels = isOuter ? labels_[pick(labels_.size())] : labels_.back();
        if (!labels.all.empty()) {
            return append(tree, "@" + labels.all[pick(labels.all.size())]);
        }
    }
    if (!mayBeGroup || size <= 0 || !chance(3)) {
        return addDefinition(tree, size);
    }
    const int alternatives = 1 + static_cast<int>(pick(3));
    append(tree, "(");
    for (int i = 0; i < alternatives; ++i) {
        append(tree, i > 0 ? "; " : "");
        addChain(tree, size / alternatives - 1, true);
    }
    append(tree, ")");
}

void ExpressionGenerator::addDefinition(ExpressionTree& tree, int size) {
    std::vector<std::string>& open = labels_.back().open;
    if (!open.empty() && (size <= 0 || chance(2))) {
        append(tree, open.back() + ": ");
        open.pop_back();
    }
    expand(tree, "?m", 0);
    expand(tree, stepTexts[size > 0 ? pick(stepTexts.size()) : 0], std::min(size, 4));
}
