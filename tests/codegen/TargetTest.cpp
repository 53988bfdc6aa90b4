// Expressions and the target graphs that they become.
//
// The tables have a row for each expression, with its target behind "==>": written short, without
// the abstraction round it, and spelled out before it is compared: see spelledOut().
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "codegen/TargetTable.h"
#include "fliodram/MMObjectVarExpr.h"
#include "fliodram/MMTargetPrinter.h"
#include "support/TextBlock.h"

namespace {

struct TargetCase {
    std::string text;
    std::string target;
};

using CompileFunction = std::string (*)(ExprParserDialogs& dialogs, const std::string& text);

template <auto entryPoint>
std::string compiledTarget(ExprParserDialogs& dialogs, const std::string& text) {
    const auto expression = entryPoint(dialogs, text);
    return expression ? printedTarget(*expression) : "";
}
constexpr CompileFunction asCondition = &compiledTarget<&ExprParser::parseCondition>;
constexpr CompileFunction asAttribute = &compiledTarget<&ExprParser::parseAssociatedAttribute>;
constexpr CompileFunction asAssociation = &compiledTarget<&ExprParser::parseComplexAssociation>;

// Takes the characters of `text` from `begin` on up to one of `stops`, and moves `begin` there.
std::string takeUntil(std::string_view text, std::size_t& begin, std::string_view stops) {
    const std::size_t start = begin;
    begin = std::min(text.find_first_of(stops, start), text.size());
    return std::string(text.substr(start, begin - start));
}

// 'x' is the text constant x, #1 any other constant, $n.v1 the attribute n of v1, a:v1 the objects
// that the association a reaches from v1, Step( a traversal, and Name( any other MMNameExpr.
std::string spelledOut(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (c == '\'') {
            result += "MMConstantExpr(\"" + takeUntil(text, ++i, "'") + "\")";
            ++i;
        } else if (c == '#') {
            result += "MMConstantExpr(" + takeUntil(text, ++i, ",)") + ")";
        } else if (c == '$') {
            result += "MMAttrExpr(MMConstantExpr(\"" + takeUntil(text, ++i, ".") + "\"), ";
            result += takeUntil(text, ++i, ",)") + ")";
        } else if (c == '"') {
            result += '"' + takeUntil(text, ++i, "\"") + '"';
            ++i;
        } else if (std::isalpha(c) != 0) {
            const std::string word = takeUntil(text, i, "(,):= ");
            if (i < text.size() && text[i] == ':') {
                result += "MMAssociationExpr(MMAssociationTraversal(\"" + word + "\", false), ";
                result += spelledOut(takeUntil(text, ++i, ",)")) + ")";
            } else if (word == "Step") {
                result += "MMAssociationTraversal";
            } else {
                result += std::isupper(c) != 0 ? "MM" + word + "Expr" : word;
            }
        } else {
            result += c;
            ++i;
        }
    }
    return result;
}

std::vector<TargetCase> rowsOf(std::string_view table) {
    std::vector<TargetCase> cases;
    for (const std::string& row : textsOf(table)) {
        const std::size_t arrow = row.find(" ==> ");
        cases.push_back(TargetCase{row.substr(0, arrow), row.substr(arrow + 5)});
    }
    return cases;
}

void expectTargets(CompileFunction compile, const std::vector<TargetCase>& cases) {
    const std::string function =
        compile == asAssociation ? "MMObjectCollectionAbsExpr(v1, " : "MMValueAbsExpr(v1, ";
    for (const TargetCase& c : cases) {
        RecordingDialogs dialogs;
        const std::string target = compile(dialogs, c.text);
        EXPECT_EQ(target, function + spelledOut(c.target) + ")") << c.text;
        for (const std::string& message : dialogs.messages) {
            EXPECT_EQ(message.find(" 3 "), std::string::npos) << c.text << ": " << message;
        }
    }
}

TEST(Target, ConstantsAttributesAndOperators) {
    expectTargets(asAttribute, {{" $ n\n", "$n.v1"}, {"$n\r", "$n.v1"}});
    expectTargets(asAttribute, rowsOf(R"table(
1 ==> #1 ;; 2147483647 ==> #2147483647 ;; 2.0 ==> #2 ;; 0.125 ==> #0.125 ;; true ==> #true
"" ==> '' ;; "a\"b\\c\td" ==> 'a\"b\\c\td'
// The short-cut for an attribute, and the ways round it.
$n ==> $n.v1 ;; ($n) ==> $n.v1 ;; $n of this ==> $n.v1 ;; $n of current ==> $n.v1
attribute ("n", this) ==> $n.v1 ;; attribute ($m, this) ==> Attr($m.v1, v1)
$n of model ==> Attr('n', Model(v1))
// Reads of an attribute that the expression reads before, and others that look like them.
$n + $v + $n ==> Arithmetic(Arithmetic($n.v1, 1, $v.v1), 1, $n.v1)
$n + attribute ("n", current) ==> Arithmetic($n.v1, 1, $n.v1)
$n of model + $n of model ==> Arithmetic(Attr('n', Model(v1)), 1, Attr('n', Model(v1)))
$n of [n] + $n ==> Arithmetic(Delimiter(', ', Map(ValueAbs(v2, $n.v2), n:v1)), 1, $n.v1)
let x = [a] in $n of x + $n of x ==> LetValue(b1=ObjectCollectionBinding(a:v1),
 Arithmetic(Delimiter(', ', Map(ValueAbs(v2, $n.v2), b1)), 1,
 Delimiter(', ', Map(ValueAbs(v3, $n.v3), b1))))
// Arithmetic.
1 + 2 ==> Arithmetic(#1, 1, #2) ;; 1 - 2 ==> Arithmetic(#1, 2, #2)
1 * 2 ==> Arithmetic(#1, 3, #2) ;; 1 / 2 ==> Arithmetic(#1, 4, #2)
1.5 / 0.5 ==> Arithmetic(#1.5, 4, #0.5) ;; $n + "x" ==> Arithmetic($n.v1, 1, 'x')
-1 ==> Arithmetic(#1, 2, null) ;; - -0.5 ==> Arithmetic(Arithmetic(#0.5, 2, null), 2, null)
3 - 2 - 1 ==> Arithmetic(Arithmetic(#3, 2, #2), 2, #1)
3 - (2 - 1) ==> Arithmetic(#3, 2, Arithmetic(#2, 2, #1))
)table"));
    expectTargets(asCondition, rowsOf(R"table(
true and false ==> Boolean(#true, 1, #false) ;; true or false ==> Boolean(#true, 2, #false)
not true ==> Boolean(#true, 3, null) ;; true implies false ==> Boolean(#true, 4, #false)
true implies false implies true ==> Boolean(#true, 4, Boolean(#false, 4, #true))
// Comparisons of booleans, objects and sets, which have "<=" before ">": the latter is "<" with
// exchanged operands.
true = false ==> Relational(#true, 1, #false) ;; true <> false ==> Relational(#true, 2, #false)
this = model ==> ObjectEquality(v1, 1, Model(v1)) ;; this <> current ==> ObjectEquality(v1, 2, v1)
[a] = [b] ==> ObjectSet(a:v1, 1, b:v1) ;; [a] <> [b] ==> ObjectSet(a:v1, 2, b:v1)
[a] < [b] ==> ObjectSet(a:v1, 3, b:v1) ;; [a] <= [b] ==> ObjectSet(a:v1, 4, b:v1)
[a] > [b] ==> ObjectSet(b:v1, 3, a:v1) ;; [a] >= [b] ==> ObjectSet(b:v1, 4, a:v1)
let x = [a] in x > [b] ==> LetValue(b1=ObjectCollectionBinding(a:v1), ObjectSet(b:v1, 3, b1))
for_all x in [a] => $n of x = $n of this ==> All(a:v1, Relational($n.v2, 1, $n.v1), v2)
// Comparisons with patterns: the pattern, on the right, comes first.
$n ~= "p" ==> RegExpMatch('p', $n.v1) ;; "p" ~= $n ==> RegExpMatch($n.v1, 'p')
$n ~<> "p" ==> Boolean(RegExpMatch('p', $n.v1), 3, null)
)table"));
}

TEST(Target, OverloadsForValues) {
    const std::vector<TargetCase> operands = {{"1", "#1"}, {"0.5", "#0.5"}, {"$n", "$n.v1"}};
    // Here ">" comes before "<=".
    const std::vector<TargetCase> comparisons = {{" = ", "1"}, {" <> ", "2"}, {" < ", "3"},
                                                 {" > ", "4"}, {" <= ", "5"}, {" >= ", "6"}};
    const std::vector<TargetCase> conversions = {
        {"integer ", "1"}, {"real ", "2"}, {"string ", "3"}, {"boolean ", "4"}};
    for (const TargetCase& operand : operands) {
        for (const TargetCase& op : comparisons) {
            expectTargets(asCondition, {{operand.text + op.text + operand.text,
                                         "Relational(" + operand.target + ", " + op.target + ", " +
                                             operand.target + ")"}});
        }
    }
    for (const TargetCase& op : conversions) {
        for (const TargetCase& operand : operands) {
            expectTargets(asAttribute, {{op.text + operand.text,
                                         "Conversion(" + operand.target + ", " + op.target + ")"}});
        }
        expectTargets(asAttribute, {{op.text + "true", "Conversion(#true, " + op.target + ")"}});
    }
}

TEST(Target, Functions) {
    expectTargets(asAttribute, rowsOf(R"table(
class this ==> ClassName(v1) ;; uid this ==> Uid(v1) ;; escape "x" ==> UndocumentedEscape('x')
tolower "x" ==> StringManipulation(1, 'x') ;; toupper "x" ==> StringManipulation(2, 'x')
trim "x" ==> StringManipulation(3, 'x') ;; size [a] ==> Count(a:v1)
// Patterns: here the pattern is the first argument and stays it.
match (`p`, $n) ==> RegExpMatch('p', $n.v1) ;; find (`p`, $n) ==> RegExpFind('p', $n.v1)
replace (`p`, $n, "r") ==> RegExpReplace('p', $n.v1, 'r')
replace_all (`p`, $n, "r") ==> RegExpReplace('p', $n.v1, 'r', replaceAll=true)
match (`a\d "x"`, "") ==> RegExpMatch('a\\d \"x\"', '')
// Strings of a collection.
comma map {$n} over [a] ==> Delimiter(', ', Map(ValueAbs(v2, $n.v2), a:v1))
concat map {"x"} over [a] ==> Delimiter('', Map(ValueAbs(v2, 'x'), a:v1))
delim ($m, map {$n} over [a]) ==> Delimiter($m.v1, Map(ValueAbs(v2, $n.v2), a:v1))
$n of [a] ==> Delimiter(', ', Map(ValueAbs(v2, $n.v2), a:v1))
attribute ($m, [a]) ==> Delimiter(', ', Map(ValueAbs(v2, Attr($m.v1, v2)), a:v1))
// An object out of a collection.
uid first [a] ==> Uid(ObjectExtraction(a:v1, choice=1))
uid only [a] ==> Uid(ObjectExtraction(a:v1, choice=0))
uid object [a] ==> Uid(ObjectExtraction(a:v1, choice=0))
// Alternatives.
$n |=> "x" ==> LetValue(b1=ValueBinding($n.v1), IfValue(Relational(b1, 2, ''), b1, 'x'))
alternation ($n, $m)
 ==> LetValue(b1=ValueBinding($n.v1), IfValue(Relational(b1, 2, ''), b1, $m.v1))
($n |=> $m) |=> "x" ==> LetValue(b1=ValueBinding(LetValue(b2=ValueBinding($n.v1),
 IfValue(Relational(b2, 2, ''), b2, $m.v1))), IfValue(Relational(b1, 2, ''), b1, 'x'))
// The signature of an operation: the function written in the language.
opSig first [a] ==> ApplyValue(ValueAbs(v2, IfValue(Relational(ClassName(v2), 1, 'Operation'),
 Arithmetic(Arithmetic(Arithmetic(Arithmetic($name.v2, 1, '('), 1, Delimiter(', ',
 Map(ValueAbs(v3, Arithmetic(Arithmetic($name.v3, 1, ' : '), 1,
 LetValue(b1=ValueBinding($type.v3), IfValue(Relational(b1, 2, ''), b1, '<<unspecified>>')))),
 parameter:v2))), 1, ') : '), 1,
 LetValue(b2=ValueBinding($type.v2), IfValue(Relational(b2, 2, ''), b2, 'void'))),
 Arithmetic(Arithmetic('<<object is not an Operation; actual class of object is ', 1,
 ClassName(v2)), 1, '>>'))), ObjectExtraction(a:v1, choice=1))
)table"));
    expectTargets(asAssociation, rowsOf(R"table(
all "X" ==> AllInstances('X', Model(v1)) ;; reverse [a] ==> Reverse(a:v1)
unique [a] ==> Unique(a:v1, false) ;; unique_stable [a] ==> Unique(a:v1, true)
filter {all "X" = [b]} over [a]
 ==> Filter(ValueAbs(v2, ObjectSet(AllInstances('X', Model(v1)), 1, b:v2)), a:v1)
)table"));
}

TEST(Target, LetsAndConditionals) {
    expectTargets(asAttribute, rowsOf(R"table(
// A variable used once, twice, never.
let x = 1 in x ==> LetValue(b1=ValueBinding(#1), b1) ;; let x = 1 in $n ==> $n.v1
let x = $n in x + x ==> LetValue(b1=ValueBinding($n.v1), Arithmetic(b1, 1, b1))
let x = 1 in let y = x in 2 ==> LetValue(ValueBinding(#1), #2)
let x = (let y = 1 in 2) in x ==> LetValue(b1=ValueBinding(#2), b1)
// Nested lets of the same name; a let inside a binding.
let x = 1 in let x = 2 in x ==> LetValue(b1=ValueBinding(#2), b1)
let x = 1 in let x = x + 1 in x
 ==> LetValue(b1=ValueBinding(#1), LetValue(b2=ValueBinding(Arithmetic(b1, 1, #1)), b2))
let x = 1 in (let x = 2 in x) + x
 ==> LetValue(b1=ValueBinding(#1), Arithmetic(LetValue(b2=ValueBinding(#2), b2), 1, b1))
(let x = 1 in x) + (let x = 2 in x) ==> Arithmetic(LetValue(b1=ValueBinding(#1), b1), 1,
 LetValue(b2=ValueBinding(#2), b2))
let x = (let y = 1 in y) in x ==> LetValue(b1=ValueBinding(LetValue(b2=ValueBinding(#1), b2)), b1)
// The binding has the kind of the variable, the let that of its body.
let x = true in x ==> LetValue(b1=ValueBinding(#true), b1)
let x = 0.5 in x ==> LetValue(b1=ValueBinding(#0.5), b1)
let x = model in $n of x ==> LetValue(b1=ObjectBinding(Model(v1)), Attr('n', b1))
let x = map {$n} over [a] in comma x
 ==> LetValue(b1=StringCollectionBinding(Map(ValueAbs(v2, $n.v2), a:v1)), Delimiter(', ', b1))
uid (let x = [a] in first x)
 ==> Uid(LetObject(b1=ObjectCollectionBinding(a:v1), ObjectExtraction(b1, choice=1)))
comma (let x = $m in map {x + $n} over [a]) ==> Delimiter(', ',
 LetStringCollection(b1=ValueBinding($m.v1), Map(ValueAbs(v2, Arithmetic(b1, 1, $n.v2)), a:v1)))
// A variable may have the name of a function, and hides nothing of it.
let size = [a] in size size ==> LetValue(b1=ObjectCollectionBinding(a:v1), Count(b1))
// Conditionals.
if true then 1 else 2 ==> IfValue(#true, #1, #2)
if $n = $m then 0.5 else 1.5 ==> IfValue(Relational($n.v1, 1, $m.v1), #0.5, #1.5)
if true then $n |=> $m else $o ==> IfValue(#true, LetValue(b1=ValueBinding($n.v1),
 IfValue(Relational(b1, 2, ''), b1, $m.v1)), $o.v1)
if true then $n else $m |=> $o ==> LetValue(b1=ValueBinding(IfValue(#true, $n.v1, $m.v1)),
 IfValue(Relational(b1, 2, ''), b1, $o.v1))
$n of (if true then this else model) ==> Attr('n', IfObject(#true, v1, Model(v1)))
comma (if true then map {$n} over [a] else map {$m} over [b]) ==> Delimiter(', ',
 IfStringCollection(#true, Map(ValueAbs(v2, $n.v2), a:v1), Map(ValueAbs(v3, $m.v3), b:v1)))
)table"));
    expectTargets(asAssociation, rowsOf(R"table(
if true then [a] else [b] ==> IfObjectCollection(#true, a:v1, b:v1)
let x = [a] in x ==> LetObjectCollection(b1=ObjectCollectionBinding(a:v1), b1)
let x = first [a] in x -> [b]
 ==> LetObjectCollection(b1=ObjectBinding(ObjectExtraction(a:v1, choice=1)), b:b1)
let x = $m in this -> [a]{$n = x} ==> LetObjectCollection(b1=ValueBinding($m.v1),
 Association(Step("a", false, condition=ValueAbs(v2, Relational($n.v2, 1, b1))), v1))
)table"));
}

TEST(Target, IterationsAndTheirVariables) {
    expectTargets(asCondition, rowsOf(R"table(
for_all x in [a] => $n of x = $m of this ==> All(a:v1, Relational($n.v2, 1, $m.v1), v2)
there_exists x in [a] => true ==> Some(a:v1, #true, v2)
// "current" is the object of the innermost quantifier or iteration, "model" the root of the object
// that the whole is about.
for_all x in [a] => current = x ==> All(a:v1, ObjectEquality(v2, 1, v2), v2)
for_all x in [a] => model = x ==> All(a:v1, ObjectEquality(Model(v1), 1, v2), v2)
for_all x in [a] => there_exists y in [b] => x = y and current <> this
 ==> All(a:v1, Some(b:v2, Boolean(ObjectEquality(v2, 1, v3), 1, ObjectEquality(v3, 2, v1)), v3), v2)
for_all x in [a] => there_exists x in x -> [b] => x = this
 ==> All(a:v1, Some(b:v2, ObjectEquality(v3, 1, v1), v3), v2)
for_all x in [a] => size (filter {x = current} over [b]) = 0 ==> All(a:v1,
 Relational(Count(Filter(ValueAbs(v2, ObjectEquality(v3, 1, v2)), b:v3)), 1, #0), v3)
(there_exists x in [a] => x = this) or (there_exists x in [b] => x = this)
 ==> Boolean(Some(a:v1, ObjectEquality(v2, 1, v1), v2), 2,
 Some(b:v1, ObjectEquality(v3, 1, v1), v3))
let x = this in there_exists x in [a] => x = this ==> Some(a:v1, ObjectEquality(v2, 1, v1), v2)
)table"));
    expectTargets(asAssociation, rowsOf(R"table(
filter {$n = $m of this} over [a] ==> Filter(ValueAbs(v2, Relational($n.v2, 1, $m.v1)), a:v1)
filter {true} over (filter {current = this} over [a])
 ==> Filter(ValueAbs(v2, #true), Filter(ValueAbs(v3, ObjectEquality(v3, 1, v1)), a:v1))
filter {size (filter {$n = ""} over [b]) = size [a]} over [a] ==> Filter(ValueAbs(v2,
 Relational(Count(Filter(ValueAbs(v3, Relational($n.v3, 1, '')), b:v2)), 1, Count(a:v2))), a:v1)
filter {there_exists x in [b] => current = x} over [a]
 ==> Filter(ValueAbs(v2, Some(b:v2, ObjectEquality(v3, 1, v3), v3)), a:v1)
traverse {[b]} over [a] ==> Traverse(ObjectCollectionAbs(v2, b:v2), a:v1)
traverse {this -> [b]} over model -> [a] ==> Traverse(ObjectCollectionAbs(v2, b:v1), a:Model(v1))
traverse {traverse {[c]} over [b]} over [a] ==> Traverse(ObjectCollectionAbs(v2,
 Traverse(ObjectCollectionAbs(v3, c:v3), b:v2)), a:v1)
// Each sort key has its own variable, a quantifier as a key included.
sort {$n} over [a] ==> Sort(a:v1, key(ValueAbs(v2, $n.v2), true))
sortd {$n} & sort {size [b]} & sortd {$n} over [a] ==> Sort(a:v1, key(ValueAbs(v2, $n.v2),
 false), key(ValueAbs(v3, Count(b:v3)), true), key(ValueAbs(v4, $n.v4), false))
sort {for_all x in [b] => $n of x = $m} & sort {$n} over [a] ==> Sort(a:v1,
 key(ValueAbs(v2, All(b:v2, Relational($n.v3, 1, $m.v3), v3)), true),
 key(ValueAbs(v4, $n.v4), true))
sort {there_exists x in [b] => true} over [a]
 ==> Sort(a:v1, key(ValueAbs(v2, Some(b:v2, #true, v3)), true))
sort {let x = $n in x} over [a]
 ==> Sort(a:v1, key(ValueAbs(v2, LetValue(b1=ValueBinding($n.v2), b1)), true))
sort {size (sort {$n} over [b])} over [a]
 ==> Sort(a:v1, key(ValueAbs(v2, Count(Sort(b:v2, key(ValueAbs(v3, $n.v3), true)))), true))
)table"));
}

TEST(Target, Paths) {
    expectTargets(asAssociation, rowsOf(R"table(
[a] ==> a:v1 ;; current -> [a] ==> a:v1 ;; model -> [a] ==> a:Model(v1)
[a\]\\b] ==> Association(Step("a]\\b", false), v1)
[a] -> [b] -> [c]
 ==> Association(Step("a", false, child=Step("b", false, child=Step("c", false))), v1)
// Markers.
^[a] -> [b] ==> Association(Step("a", true, child=Step("b", false)), v1)
_[a] ==> Association(Step("a", false, depthFirst=true), v1)
^_[a] -> ^[b] ==> Association(Step("a", true, depthFirst=true, child=Step("b", true)), v1)
// Conditions, each with its own variable, and its variable in a nested quantifier.
[a]{$n = $m of this} -> [b]{current = this}
 ==> Association(Step("a", false, condition=ValueAbs(v2, Relational($n.v2, 1, $m.v1)),
 child=Step("b", false, condition=ValueAbs(v3, ObjectEquality(v3, 1, v1)))), v1)
_[a]{for_all x in [b] => x = current} ==> Association(Step("a", false, depthFirst=true,
 condition=ValueAbs(v2, All(b:v2, ObjectEquality(v3, 1, v3), v3))), v1)
// Groups; a step after a group is one step with several parents.
this -> ([a]; [b]; [c])
 ==> Association(Step("a", false, sibling=Step("b", false, sibling=Step("c", false))), v1)
this -> (([a]; [b]); [c])
 ==> Association(Step("a", false, sibling=Step("b", false, sibling=Step("c", false))), v1)
this -> ([a]; [b]) -> [c] ==> Association(Step("a", false, child=t1=Step("c", false),
 sibling=Step("b", false, child=t1)), v1)
this -> ([a]; ([b]; [c]) -> [d]) ==> Association(Step("a", false, sibling=Step("b", false,
 child=t1=Step("d", false), sibling=Step("c", false, child=t1))), v1)
this -> ([a] -> [b]; [c]) -> ([d]; [e]) ==> Association(Step("a", false, child=Step("b", false,
 child=t1=Step("d", false, sibling=Step("e", false))), sibling=Step("c", false, child=t1)), v1)
this -> ([a]; [b]) -> ([c]; [d]) -> [e]{current = this} ==> Association(Step("a", false,
 child=t1=Step("c", false, child=t2=Step("e", false,
 condition=ValueAbs(v2, ObjectEquality(v2, 1, v1))), sibling=Step("d", false, child=t2)),
 sibling=Step("b", false, child=t1)), v1)
this -> ([a]; l:[b]) -> [c] -> @l ==> Association(Step("a", false, child=t1=Step("c", false,
 child=t2=Step("b", false, child=t1)), sibling=t2), v1)
// Labels: never used, back, to the middle, forward, in a condition, in two paths.
l:[a] ==> a:v1 ;; l:[a] -> @l ==> Association(t1=Step("a", false, child=t1), v1)
[a] -> l:[b] -> [c] -> @l ==> Association(Step("a", false, child=t1=Step("b", false,
 child=Step("c", false, child=t1))), v1)
this -> ([a] -> @l; l:[b] -> [c]) ==> Association(Step("a", false, child=t1=Step("b", false,
 child=Step("c", false)), sibling=t1), v1)
this -> ([a] -> @l; l:[b]; [c]) ==> Association(Step("a", false, child=t1=Step("b", false,
 sibling=Step("c", false)), sibling=t1), v1)
this -> ([a] -> @l; l:[b] -> @m; m:[c] -> @l) ==> Association(Step("a", false,
 child=t1=Step("b", false, child=t2=Step("c", false, child=t1), sibling=t2), sibling=t1), v1)
l:[a]{[b] -> @l = [c]} ==> Association(t1=Step("a", false, condition=ValueAbs(v2,
 ObjectSet(Association(Step("b", false, child=t1), v2), 1, c:v2))), v1)
if (l:[a] -> @l) = (l:[b] -> @l) then [a] else [b]
 ==> IfObjectCollection(ObjectSet(Association(t1=Step("a", false, child=t1), v1), 1,
 Association(t2=Step("b", false, child=t2), v1)), a:v1, b:v1)
// References among the alternatives of a group stand behind the steps.
l:[a] -> ([b]; @l) ==> Association(t1=Step("a", false, child=Step("b", false, sibling=t1)), v1)
l:[a] -> (@l; [b]) ==> Association(t1=Step("a", false, child=Step("b", false, sibling=t1)), v1)
l:^[a] -> ([b] -> @l; _[c]) -> [d] ==> Association(t1=Step("a", true, child=Step("b", false,
 child=t1, sibling=Step("c", false, depthFirst=true, child=Step("d", false)))), v1)
// What stands behind a reference is not followed.
l:[a] -> @l -> [b] ==> Association(t1=Step("a", false, child=t1), v1)
l:[a] -> m:[b] -> ([c]; @l; @m) ==> Association(t1=Step("a", false, child=Step("b", false,
 child=Step("c", false, sibling=t1))), v1)
l:[a] -> ([b]; @l) -> [c] ==> Association(t1=Step("a", false, child=Step("b", false,
 child=Step("c", false), sibling=t1)), v1)
)table"));
}

TEST(Target, StepsAfterGroupsAreGeneratedOnce) {
    constexpr std::size_t groups = 200;
    std::string text = "this";
    for (std::size_t i = 0; i < groups; ++i) {
        text += " -> ([a]; [b])";
    }
    RecordingDialogs dialogs;
    const std::string target = asAssociation(dialogs, text);
    std::size_t steps = 0;
    for (std::size_t at = 0; (at = target.find("Traversal(", at)) != std::string::npos; ++at) {
        ++steps;
    }
    EXPECT_EQ(steps, 2 * groups);
}

}  // namespace

// Those that stand in the table, and those that went to its hash table, in any order.
TEST(TargetTable, FindsEveryTargetWhereItWasPut) {
    using Variable = OrvCyclicPtr<MMObjectVarExpr>;
    constexpr std::size_t count = 11;
    const std::vector<int> keys(count);
    TargetTable<int, MMObjectVarExpr> table;
    std::vector<const Variable*> places;
    std::vector<const MMObjectVarExpr*> targets;
    for (const int& key : keys) {
        Variable& target = table[key];
        EXPECT_FALSE(target) << places.size();
        target = Variable(new MMObjectVarExpr);
        places.push_back(&target);
        targets.push_back(target.get());
    }
    for (std::size_t stride = 0; stride < count; ++stride) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t index = i * stride % count;
            const Variable& found = table[keys[index]];
            EXPECT_EQ(&found, places[index]) << index;
            EXPECT_EQ(found.get(), targets[index]) << index;
        }
    }
}
