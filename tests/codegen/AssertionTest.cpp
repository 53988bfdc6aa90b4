// What code generation does with what the type checker would never let through, and the generators
// on their own.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "api/RecordingDialogs.h"
#include "codegen/CodeGenVisitor.h"
#include "codegen/ConversionFunGenerators.h"
#include "codegen/MMUndocumentedEscapeExpr.h"
#include "codegen/RelationalOpGenerators.h"
#include "codegen/VariableCodeGenerator.h"
#include "fliodram/MMCollectionExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMLetExpr.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/StructModel.h"
#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/SyntaxParser.h"
#include "support/RecordedLog.h"
#include "typecheck/ASTTypeCheckVisitor.h"

namespace {

/// Types that no let and no conditional can have.
std::vector<TypePtr> typesWithoutTarget() {
    return {TypeExpression::regexpType(),
            TypeExpression::unitType(),
            TypeExpression::typeError(),
            TypePtr(new TEProduct),
            TypePtr(new TEFunction(TypeExpression::stringType(), TypeExpression::stringType())),
            TypePtr(new TECollection(TypeExpression::integerType())),
            TypePtr(new TECollection(TypeExpression::objectCollectionType()))};
}

void expectAssertion(const std::function<void()>& action, const std::string& file,
                     const std::string& message, const std::string& condition = "false") {
    for (const bool isLogged : {false, true}) {
        const RecordedLog log(isLogged ? std::vector<std::string>{"Throw"}
                                       : std::vector<std::string>{"Catch"});
        try {
            action();
            ADD_FAILURE() << "no assertion: " << message;
        } catch (const OrvAssertion& assertion) {
            EXPECT_EQ(assertion.what(), message);
            EXPECT_EQ(assertion.getCondition(), condition);
            EXPECT_EQ(assertion.getFile(), file);
            EXPECT_EQ(log.text(), isLogged ? "Exception throw: " + message + "\n" : "");
        }
    }
}

class AnyType : public TypeRequirement {
public:
    bool check(const TypePtr& /*type*/) const override { return true; }
    std::string text() const override { return "{anything}"; }
};

/// A text up to code generation.
template <class Node>
struct Checked {
    explicit Checked(const char* text) {
        RecordingDialogs dialogs;
        std::ostringstream errors;
        root = SyntaxParser::parse(dialogs, text, errors);
        CreateNameSpaceVisitor scopes(TopLevelEnvironment::instance()->getScope());
        root->accept(scopes);
        nameSpace = scopes.getNameSpace();
        const AnyType requirement;
        ASTTypeCheckVisitor types(dialogs, nameSpace, requirement);
        root->accept(types);
        usage = types.getLetVariableUsage();
    }

    Node& node() const { return dynamic_cast<Node&>(*root->getExpr()); }
    void generate() const {
        CodeGenVisitor visitor(nameSpace, usage);
        root->accept(visitor);
    }

    OrvCountedPtr<SpecificationNode> root;
    OrvCountedPtr<NameSpace> nameSpace;
    LetVariableUsage usage;
};

/// Makes a binding for a variable of any type.
class BindingForAnyType : public VariableCodeGenerator {
public:
    TargetPtr generate(const TypePtr& /*type*/, std::string_view /*name*/) const override {
        return TargetPtr(new MMValueBindingExpr);
    }
};

TEST(CodeGenAssertions, TypesWithoutTarget) {
    const std::string letMessage = "Type is not appropriate for generating a let binding.";
    for (const TypePtr& type : typesWithoutTarget()) {
        const LetVarGenerator generator;
        expectAssertion([&] { (void)generator.generate(type, "x"); }, "VariableCodeGenerator",
                        "Type is not appropriate for generating a let-bound variable.");

        const Checked<IfExpressionNode> conditional("if true then 1 else 2");
        conditional.generate();
        conditional.node().setResultType(type);
        expectAssertion([&] { conditional.generate(); }, "CodeGenVisitor",
                        "Type is not appropriate for generating an if-expression.");

        const Checked<LetExpressionNode> let("let x = 1 in x");
        let.generate();
        let.node().setResultType(type);
        expectAssertion([&] { let.generate(); }, "CodeGenVisitor", letMessage);
        let.node().getBoundVariable()->setType(type);
        expectAssertion([&] { let.generate(); }, "VariableCodeGenerator",
                        "Type is not appropriate for generating a let-bound variable.");

        Checked<LetExpressionNode> binding("let x = 1 in 2");
        const OrvCountedPtr<VariableSymbol> symbol(new VariableSymbol(
            "x", type, OrvCountedPtr<VariableCodeGenerator>(new BindingForAnyType)));
        binding.node().setResultType(type);
        EXPECT_NO_THROW(binding.generate()) << "the variable is not used, so there is no let";
        binding.node().setBoundVariable(symbol);
        binding.usage.recordUse(*symbol);
        expectAssertion([&] { binding.generate(); }, "CodeGenVisitor", letMessage);
    }
}

TEST(CodeGenAssertions, ResultsOfAnotherKind) {
    const std::string message = "A generated expression is not of the kind that its place needs.";
    const Checked<IfExpressionNode> conditional("if true then 1 else 2");
    conditional.node().setResultType(TypeExpression::objectType());
    expectAssertion([&] { conditional.generate(); }, "Target", message, "target");
    const Checked<LetExpressionNode> let("let x = 1 in x");
    let.node().setResultType(TypeExpression::stringCollectionType());
    expectAssertion([&] { let.generate(); }, "Target", message, "target");
    let.node().getBoundVariable()->setType(TypeExpression::objectType());
    expectAssertion([&] { let.generate(); }, "Target", message, "target");
}

TEST(CodeGenAssertions, ScopesOfAnotherExpression) {
    const Checked<PathNode> path("this -> [a]");
    CodeGenVisitor visitor(OrvCountedPtr<NameSpace>(new NameSpace), path.usage);
    expectAssertion([&] { path.root->accept(visitor); }, "CodeGenVisitor",
                    "A variable that every expression has is not declared.");
}

TEST(CodeGenAssertions, UnknownOperators) {
    const Checked<BinaryExpressionNode> sum("1 + 2");
    BinaryExpressionNode unknown(static_cast<BinaryOperator>(99), sum.node().getLhs(),
                                 sum.node().getRhs());
    CodeGenVisitor visitor(sum.nameSpace, sum.usage);
    expectAssertion([&] { unknown.accept(visitor); }, "CodeGenVisitor",
                    "A binary expression has no known operator.");
}

/// Gives a variable of its own, and remembers what it was asked for.
class OneVariable final : public ObjectVariableRetriever {
public:
    OrvCyclicPtr<MMObjectVarExpr> retrieve(std::string_view name) override {
        asked += name;
        return variable;
    }
    OrvCyclicPtr<MMObjectVarExpr> variable{new MMObjectVarExpr};
    std::string asked;
};

/// One target of each kind, and one that is missing.
std::vector<TargetPtr> targetsOfEachKind(const char* text = "x") {
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMConstantExpr> value(new MMConstantExpr(text));
    const OrvCyclicPtr<MMAllInstancesExpr> objects(new MMAllInstancesExpr(value, variable));
    const OrvCyclicPtr<MMValueAbsExpr> function(new MMValueAbsExpr(variable, value));
    return {value, variable, objects, OrvCyclicPtr<MMMapExpr>(new MMMapExpr(function, objects)),
            TargetPtr()};
}

// The place of a type's kind in targetsOfEachKind().
std::size_t kindOf(const TypePtr& type) {
    return TypeExpression::isObject(type)             ? 1
           : TypeExpression::isObjectCollection(type) ? 2
           : TypeExpression::isStringCollection(type) ? 3
                                                      : 0;
}

std::vector<std::size_t> parameterKinds(const FunctionSymbol& symbol) {
    const TypePtr& domain = dynamic_cast<const TEFunction&>(*symbol.getType()).getDomain();
    if (domain->getTypeKind() != TypeKind::product) {
        return {kindOf(domain)};
    }
    const auto& product = dynamic_cast<const TEProduct&>(*domain);
    std::vector<std::size_t> kinds;
    for (std::size_t i = 0; i < product.size(); ++i) {
        kinds.push_back(kindOf(product.component(i)));
    }
    return kinds;
}

TEST(Generators, TakeTheKindsOfTheirSignaturesAlone) {
    std::size_t calls = 0;
    for (const Scope::Entry& entry : TopLevelEnvironment::instance()->getScope()->entries()) {
        const auto& symbol = dynamic_cast<const FunctionSymbol&>(*entry.symbol);
        const std::vector<std::size_t> kinds = parameterKinds(symbol);
        const auto generate = [&](std::size_t position, std::size_t kind) {
            std::vector<TargetPtr> arguments;
            for (std::size_t i = 0; i < kinds.size(); ++i) {
                arguments.push_back(targetsOfEachKind().at(i == position ? kind : kinds[i]));
            }
            TargetPtr result;
            OneVariable retriever;
            symbol.getGenerator()->generate(result, retriever, symbol.getName(), symbol.getType(),
                                            arguments);
            EXPECT_EQ(retriever.asked, symbol.getName() == "all" ? "this" : "");
            EXPECT_TRUE(result) << symbol.getName();
            ++calls;
        };
        for (std::size_t position = 0; position < kinds.size(); ++position) {
            for (std::size_t kind = 0; kind < targetsOfEachKind().size(); ++kind) {
                const auto call = [&] { generate(position, kind); };
                if (kind == kinds[position]) {
                    EXPECT_NO_THROW(call()) << symbol.getName();
                } else {
                    EXPECT_THROW(call(), OrvAssertion)
                        << symbol.getName() << " argument " << position << " kind " << kind;
                }
            }
        }
    }
    EXPECT_GE(calls, 71U);
}

// Names that the catalogue does not have: no operator, no exchange, no negation, not the first.
TEST(Generators, TakeUnknownNames) {
    const ArithmeticRelationalOpGenerator values;
    const ObjectRelationalOpGenerator objects;
    const SetRelationalOpGenerator sets;
    const RegExpRelationalOpGenerator patterns;
    const ObjectConversionFunGenerator conversion;
    struct Case {
        const FunctionCodeGenerator& generator;
        std::size_t kind;  ///< of both arguments
        std::string target;
    };
    const std::vector<Case> cases = {
        {values, 0, R"(MMRelationalExpr(MMConstantExpr("x"), 0, MMConstantExpr("y")))"},
        {objects, 1, "MMObjectEqualityExpr(v1, 0, v2)"},
        {sets, 2,
         R"(MMObjectSetExpr(MMAllInstancesExpr(MMConstantExpr("x"), v1), 0, )"
         R"(MMAllInstancesExpr(MMConstantExpr("y"), v2)))"},
        {patterns, 0, R"(MMRegExpMatchExpr(MMConstantExpr("y"), MMConstantExpr("x")))"},
        {conversion, 2,
         R"(MMObjectExtractionExpr(MMAllInstancesExpr(MMConstantExpr("x"), v1), choice=0))"},
    };
    for (const Case& c : cases) {
        for (const char* name :
             {"", "=", "operator", "operator==", "Operator>", "First", "first "}) {
            OneVariable retriever;
            TargetPtr result;
            const std::vector<TargetPtr> arguments = {targetsOfEachKind("x").at(c.kind),
                                                      targetsOfEachKind("y").at(c.kind)};
            c.generator.generate(result, retriever, name, TypeExpression::typeError(), arguments);
            EXPECT_EQ(printedTarget(dynamic_cast<const MMTarget&>(*result)), c.target) << name;
        }
    }
}

TEST(MMUndocumentedEscapeExpr, EscapesForAQuotedText) {
    using std::string_literals::operator""s;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", ""},
        {"a\tb", "a\\tb"},
        {"\n", "\\r\\n"},
        {"\r", "\r"},
        {"\r\n", "\r\\r\\n"},
        {"\"", "\\\""},
        {"\\", "\\\\"},
        {"\\n", "\\\\n"},
        {"a\n\nb", "a\\r\\n\\r\\nb"},
        {"'/\v\f\x01\x7f", "'/\v\f\x01\x7f"},
        {"\xc3\xa4\xff", "\xc3\xa4\xff"},
        {"a\"\0\"b"s, "a\\\""},
    };
    const std::vector<Thing> things;
    const StructModel model(things);
    MMEvaluationContext context(model);
    const auto escaped = [&context](const MMValue& value) {
        const OrvCyclicPtr<MMConstantExpr> operand(new MMConstantExpr(value));
        const OrvCyclicPtr<MMUndocumentedEscapeExpr> escape(new MMUndocumentedEscapeExpr(operand));
        const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
        const OrvCyclicPtr<MMValueAbsExpr> function(new MMValueAbsExpr(variable, escape));
        return std::string(function->apply(context, mmNoObject).getText());
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(escaped(MMValue(std::string(text))), expected) << text;
    }
    EXPECT_EQ(escaped(MMValue(-1.5)), "-1.5");
    EXPECT_EQ(escaped(MMValue(true)), "true");
}

}  // namespace
