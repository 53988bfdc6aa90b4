// The type checker: types, every message and its place, all overloads, depth and number of errors.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "namespace/Catalogue.h"
#include "typecheck/ASTTypeCheckVisitor.h"
#include "types/TypeExprPrintVisitor.h"

namespace {

struct CheckOutcome {
    std::vector<std::string> messages;
    std::int32_t errorCount = 0;
    std::string type;  // as printed
};

// Takes a whole expression of any type.
class AnyTypeRequirement : public TypeRequirement {
public:
    bool check(const OrvCountedPtr<TypeExpression>& /*type*/) const override { return true; }
    std::string text() const override { return "any"; }
};

CheckOutcome check(const TreePtr& tree, const OrvCountedPtr<NameSpace>& nameSpace) {
    const AnyTypeRequirement requirement;
    RecordingDialogs dialogs;
    ASTTypeCheckVisitor checker(dialogs, nameSpace, requirement);
    tree->accept(checker);
    return {dialogs.messages, checker.getErrorCount(), printedType(checker.getResult())};
}

CheckOutcome check(const std::string& text) {
    const ParseOutcome parsed = parse(text);
    return parsed.tree ? check(parsed.tree, nameSpaceOf(parsed.tree))
                       : CheckOutcome{{stripped(parsed)}, 0, "not parsed"};
}

// An expression that is one node, and its type.
using Operand = std::pair<std::string, std::string>;

// "`a`: regexp" and so on.
std::vector<Operand> operandsOf(std::string_view table) {
    std::vector<Operand> operands;
    for (const std::string& row : textsOf(table)) {
        const std::vector<std::string> columns = split(row, ": ");
        operands.emplace_back(columns[0], spelledTypes(columns[1]));
    }
    return operands;
}
const std::vector<Operand> allOperands = operandsOf(R"table(
1: integer ;; 0.5: real ;; "x": string ;; true: boolean ;; this: object ;; [a]: objects ;; (): unit
(1, this): ( integer * object ) ;; map {"m"} over [a]: strings ;; `a`: regexp ;; nope: TypeError
)table");

// What each construct demands of its parts, under the short names that the tables use.
const std::map<std::string, std::pair<std::string, std::string>> demands = [] {
    std::map<std::string, std::pair<std::string, std::string>> result;
    for (const std::string& row : textsOf(R"table(
rhs = The right-hand side of an arithmetic operator = {string} or {integer} or {real}
lhs = The left-hand side of an arithmetic operator = {string} or {integer} or {real}
key = The parameterized key of a sort = {boolean} or {string} or {integer} or {real}
value = The value of the bound variable in a let-expression = values ;; variable = Variable = values
condition = The condition of an association component = {boolean}
predicate = The parameterized predicate of a filter = {boolean}
right = The right-hand side of a logical operator = {boolean}
left = The left-hand side of a logical operator = {boolean}
function = The parameterized function of a map = {string}
minus = The operand of unary minus = {integer} or {real} ;; anchor = The anchor of a path = {object}
path = The parameterized path of a traverse = {objects} ;; map = The source set of a map = {objects}
traverse = The source set of a traverse = {objects} ;; body = The body of a quantifier = {boolean}
then = The then-branch of an if-expression = values ;; sort = The source set of a sort = {objects}
else = The else-branch of an if-expression = values ;; not = The operand of unary not = {boolean}
each = The source set of a quantifier = {objects} ;; filter = The source set of a filter = {objects}
test = The test of an if-expression = {boolean} ;; steps = The associations of a path = {objects}
in = The body of a let-expression = values ;; step = A component of a path = {objects}
)table")) {
        const std::vector<std::string> columns = split(row, " = ");
        result[columns[0]] = {columns[1], replaced(columns[2], "values",
                                                   "{boolean} or {string} or {integer} or {real} "
                                                   "or {object} or {objects} or {strings}")};
    }
    return result;
}();

std::string shown(std::size_t column, const std::string& message) {
    return "1:" + std::to_string(column) + " TypeChecker 3 " + message;
}

std::string unmet(const std::string& demand, const std::string& type) {
    const std::string types = replaced(demands.at(demand).second, "s}", " collection}");
    return demands.at(demand).first + " must have type " + types + "; type found is {" + type +
           "}.";
}

std::string undeclared(const std::string& what, const std::string& name) {
    std::string text = "There is no " + what + "}.\nThese are the existing declarations:\n";
    for (const BuiltIn& builtIn : catalogue()) {
        text += builtIn.name == name ? "\t" + name + " : " + builtIn.type() + "\n" : "";
    }
    return text;
}

void expectChecked(const std::string& text, const std::string& type,
                   const std::vector<std::string>& messages) {
    const CheckOutcome outcome = check(text);
    EXPECT_EQ(outcome.type, type) << text;
    EXPECT_EQ(outcome.messages, messages) << text;
    EXPECT_EQ(static_cast<std::size_t>(outcome.errorCount), messages.size()) << text;
}

// Each text with its type and its messages: a column, and a text or a demand and the type found.
TEST(TypeCheck, TypesAndMessages) {
    for (const std::string& row : textsOf(R"table(
let x = 1 in there_exists x in [a] => x = current ==> boolean ;; this -> [a] -> [b] ==> objects
true implies 1 = 1 or not false and "a" ~= "b" ==> boolean ;; $n of this |=> "x" ==> string
((), (1, [a])) ==> ( unit * ( integer * objects ) ) ;; let x = 1 in let x = x = 1 in x ==> boolean
for_all x in [a] => let x = 1 in x = 1 ==> boolean ;; let x = [a] in let x = first x in x ==> object
let x = map {"m"} over [a] in comma x ==> string ;; size filter {true} over [a] ==> integer
if true then this else model ==> object ;; [a]{$n = "x"} ==> objects ;; 1 - 2 * 3 ==> integer
$n of [a] ==> string ;; - - 0.5 ==> real ;; `` ==> regexp
// One mistake, one message; what fails has the error type, about which nothing complains.
if true then [a] else this ==> TypeError
 | 1 The types of the then- and else-branches of an if-expression must agree; types found are
 then={objects} and else={object}.
1 + 0.5 = 1 ==> boolean | 3 The types of the operands of an arithmetic operator must agree; types
 found are lhs={integer} and rhs={real}.
not (1 + true = 1) and nope ==> boolean | 10 rhs: boolean | 24 Variable nope doesn't exist.
("a" - "b") + "c" ==> string | 6 The only arithmetic operator that takes a {string} is +.
if 1 then () else `a` ==> TypeError | 4 test: integer | 11 then: unit | 19 else: regexp
1 or 2 or 3 ==> boolean | 1 left: integer | 6 right: integer | 11 right: integer
sort {2} & sort {()} over 1 ==> objects | 27 sort: integer | 18 key: unit
() + nope ==> TypeError | 6 Variable nope doesn't exist. | 1 lhs: unit
1 and (2 or true) ==> boolean | 8 left: integer | 1 left: integer
size nope < 1 ==> boolean | 6 Variable nope doesn't exist.
let x = `a` in x -> [b] ==> objects | 9 value: regexp
() * this ==> TypeError | 1 lhs: unit | 6 rhs: object
let x = () in x = 1 ==> boolean | 9 value: unit
// A tuple stops at its first failure; names are seen where they are declared, by kind.
l:[a] -> l:[b] -> @l ==> objects | 1 Label l is multiply defined.
 | 10 Label l is multiply defined. | 19 Label l is multiply defined.
Size nope ==> TypeError | 6 Variable nope doesn't exist. | 1 Function Size is not defined.
let count = 1 in count count ==> TypeError | 18 Function count is not defined.
(for_all x in [a] => x = x) and x ==> boolean | 33 Variable x doesn't exist.
match (`(`, nope) ==> TypeError | 8 Regular expression is malformed. ;; l:[a]{@l = [b]} ==> objects
(1, nope, 2 + true) ==> TypeError | 5 Variable nope doesn't exist. ;; l:[a] -> @l ==> objects
[a]{size l:[b] = 1} -> @l ==> objects | 24 Label l doesn't exist.
(let x = [a] in x -> [b]) = [c] ==> boolean | 17 anchor: objects
((nope, no), no) ==> TypeError | 3 Variable nope doesn't exist.
`\pL{1000}` ==> TypeError | 1 Regular expression is too long. ;; [a]{@l = [b]} -> l:[c] ==> objects
let x = x in x ==> TypeError | 9 Variable x doesn't exist. ;; let l = 1 in l:[a] -> @l ==> objects
nope -> [a] ==> objects | 1 Variable nope doesn't exist. ;; let size = [a] in size size ==> integer
l:[a]{l = 1} ==> objects | 7 Variable l doesn't exist. ;; @l ==> objects | 1 Label l doesn't exist.
size ==> TypeError | 1 Variable size doesn't exist. ;; l:[a]{size l:[b] = 1} -> @l ==> objects
l:[a] = @l ==> boolean | 9 Label l doesn't exist.
// Steps with two ways to them, or none but a reference, are checked once.
x -> ([a]; [b]) -> [c]{nope} -> ([d]; [e]) -> [f]{1} ==> objects | 1 Variable x doesn't exist.
 | 24 Variable nope doesn't exist. | 51 condition: integer
this -> ([a] -> @m; l:[b] -> @l -> m:[c]{1}) ==> objects | 42 condition: integer
this -> (@l; l:[b]{1} -> [c] -> @l) ==> objects | 20 condition: integer
this -> ([a] -> @l; l:[b]{1}) ==> objects | 27 condition: integer
this -> ([a]; [b]) -> l:[c] -> @l ==> objects ;; l:[a] -> @l -> m:[b]{nope} ==> objects
)table")) {
        const std::vector<std::string> columns = split(row, " ==> ");
        const std::vector<std::string> parts = split(spelledTypes(columns.at(1)), " | ");
        std::vector<std::string> messages;
        for (std::size_t i = 1; i < parts.size(); ++i) {
            const std::size_t column = std::stoul(parts[i]);
            const std::string message = parts[i].substr(parts[i].find(' ') + 1);
            const std::vector<std::string> found = split(message, ": ");
            messages.push_back(
                shown(column, found.size() == 1 ? message : unmet(found[0], found[1])));
        }
        expectChecked(columns[0], parts[0], messages);
    }
}

// Every operand in every place that demands a type; "%" is the operand, and its type.
TEST(TypeCheck, DemandsByOperand) {
    for (const std::string& row : textsOf(R"table(
sort {1} & sortd {%} & sort {""} over [b] ==> objects ==> key ;; % implies true ==> boolean ==> left
there_exists x in [b] => % ==> boolean ==> body ;; traverse {[b]} over % ==> objects ==> traverse
filter {%} over [b] ==> objects ==> predicate ;; for_all x in % => true ==> boolean ==> each
filter {true} over % ==> objects ==> filter ;; traverse {%} over [b] ==> objects ==> path
map {%} over [b] ==> strings ==> function ;; if % then 1 else 2 ==> integer ==> test
true implies % ==> boolean ==> right ;; map {"m"} over % ==> strings ==> map ;; - % ==> % ==> minus
sort {1} over % ==> objects ==> sort ;; let x = % in 1 ==> integer ==> value
true and % ==> boolean ==> right ;; [b]{%} ==> objects ==> condition ;; let x = 1 in % ==> % ==> in
% and true ==> boolean ==> left ;; true or % ==> boolean ==> right ;; % or true ==> boolean ==> left
let x = % in x ==> % ==> value ;; not % ==> boolean ==> not
)table")) {
        const std::vector<std::string> columns = split(row, " ==> ");
        for (const auto& [text, type] : allOperands) {
            const std::size_t column = columns[0].find('%') + 1;
            const std::string types = spelledTypes(demands.at(columns[2]).second);
            const bool isMet = types.find("{" + type + "}") != std::string::npos;
            const std::string message =
                text == "nope" ? "Variable nope doesn't exist." : unmet(columns[2], type);
            const std::string result = isMet ? type : "TypeError";
            expectChecked(replaced(columns[0], "%", text),
                          replaced(spelledTypes(columns[1]), "%", result),
                          std::vector<std::string>(isMet ? 0 : 1, shown(column, message)));
        }
    }
}

// Expects that a call chooses the overload for `domain`, or lists what there is.
void expectCall(const std::string& name, const std::string& domain, const std::string& text,
                std::size_t column, const std::string& what) {
    const std::string message = undeclared(what, name);
    const std::string overload = "\t" + name + " : ( " + domain + " -> ";
    const std::size_t at = message.find(overload);
    if (at == std::string::npos) {
        expectChecked(text, column > 1 ? "boolean" : "TypeError", {shown(column, message)});
    } else {
        expectChecked(text, split(message.substr(at + overload.size()), " )\n")[0], {});
    }
}

// Every function and operator with every operand and every pair of them.
TEST(TypeCheck, OverloadsByOperands) {
    std::vector<Operand> arguments = operandsOf(R"table(
(`a`, ("x", "")): ( regexp * ( string * string ) ) ;; (`a`, "x", ""): ( regexp * string * string )
)table");
    const std::vector<Operand> single(allOperands.begin(), allOperands.end() - 1);
    for (const auto& [left, leftType] : single) {
        arguments.emplace_back(left, leftType);
        for (const auto& [right, rightType] : single) {
            const std::string domain = "( " + leftType + " * " + rightType + " )";
            arguments.emplace_back("(" + left + ", " + right + ")", domain);
            const std::string types = "lhs={" + leftType + "} and rhs={" + rightType;
            for (const std::string& op : split("= <> ~= ~<> < <= > >=", " ")) {
                expectCall("operator" + op, domain, left + " " + op + " " + right, left.size() + 2,
                           "operator" + op + " that takes " + types);
            }
        }
    }
    for (const BuiltIn& builtIn : catalogue()) {
        const std::string& name = builtIn.name;
        for (const auto& [text, type] : arguments) {
            if (name.find("operator") != 0) {
                expectCall(name, type, name + " " + text, 1,
                           "function " + name + " that takes {" + type);
            }
        }
    }
}

// A step of type unit, as no parser builds it.
class OddStep : public AssociationNode {
public:
    OddStep() : AssociationNode(AssociationKind::reference) { setPosition(1, 9); }
    void accept(ASTVisitor& visitor) override { visitor.visitUnitExpression(unit_); }

private:
    UnitExpressionNode unit_;
};

// Rules that no text can break.
TEST(TypeCheck, TreesThatNoParserBuilds) {
    const auto messagesOf = [](const ExpressionPtr& expression) {
        const TreePtr tree(new SpecificationNode(expression));
        return check(tree, nameSpaceOf(tree)).messages;
    };
    using Messages = std::vector<std::string>;
    const TreePtr tree = parse("for_all x in [a] => current").tree;
    const auto& quantifier = dynamic_cast<UniversalQuantifierNode&>(*tree->getExpr());
    const ExpressionPtr path = quantifier.getSource();
    const ExpressionPtr twice(new UniversalQuantifierNode("current", path, quantifier.getExpr()));
    EXPECT_EQ(messagesOf(twice), Messages{shown(21, "Variable current is multiply defined.")});

    const OrvCountedPtr<NameSpace> nameSpace = nameSpaceOf(tree);
    quantifier.getBoundVariable()->setType(TypeExpression::regexpType());
    const Messages found = {shown(21, unmet("variable", "regexp")),
                            shown(21, unmet("body", "regexp"))};
    EXPECT_EQ(check(tree, nameSpace).messages, found);

    const AssociationPtr step = dynamic_cast<PathNode&>(*path).getAssociation();
    step->setChild(AssociationPtr(new OddStep));
    step->setSibling(AssociationPtr(new OddStep));
    EXPECT_EQ(messagesOf(path), Messages(2, shown(9, unmet("step", "unit"))));
    EXPECT_EQ(messagesOf(ExpressionPtr(new PathNode("this", step->getChild()))),
              Messages{shown(9, unmet("steps", "unit"))});
}

TEST(TypeCheck, ShowsAHundredErrorsAndCountsAll) {
    std::string text = "this < 1";
    for (int i = 1; i < 10000; ++i) {
        text += " and this < 1";
    }
    const CheckOutcome outcome = check(text);
    EXPECT_EQ(outcome.errorCount, 10000);
    ASSERT_EQ(outcome.messages.size(), 100U);
    const std::string what = "operator< that takes lhs={object} and rhs={integer";
    EXPECT_EQ(outcome.messages[99], shown(6 + 99 * 13, undeclared(what, "operator<")));
}

// Two of the heaviest fit, and lighter ones still; a malformed one weighs as much, and a text that
// is used as a pattern.
TEST(TypeCheck, PatternsThatAreTooHeavyTogether) {
    const std::string text =
        "match (`\\pL{127}(`, \"\")"
        " or \"a\" ~= \"\\\\pL{127}\""
        " or match (`\\pL{127}`, \"\")"
        " or \"a\" ~<> \"\\\\pL{127}\""
        " or match (`\\pL`, \"\")";
    const std::string sentence = "Regular expressions are too long together.";
    const std::vector<std::string> expected = {shown(8, "Regular expression is malformed."),
                                               shown(24 + 22 + 11, sentence),
                                               shown(24 + 22 + 26 + 12, sentence)};
    EXPECT_EQ(check(text).messages, expected);
}

TEST(TypeCheck, LongChainsNeedLittleStack) {
    const auto body = [] {
        std::string text = "true";
        for (int i = 1; i < 100000; ++i) {
            text += " or true";
        }
        const std::string message = shown(text.size() + 5, unmet("right", "object"));
        expectChecked(text + " or this", "boolean", {message});
    };
    EXPECT_TRUE(runOnStack(1024 * 1024, body));
}

}  // namespace
