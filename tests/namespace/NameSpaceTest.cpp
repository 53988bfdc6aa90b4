// Scopes: the catalogue, printed scope trees, what names mean where they are used.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include "codegen/FunctionCodeGenerator.h"
#include "foundation/OrvConverter.h"
#include "namespace/Catalogue.h"
#include "parser/ParseOutcome.h"
#include "types/TypeExprPrintVisitor.h"

namespace {

TEST(TopLevelEnvironment, HoldsTheCatalogue) {
    std::vector<BuiltIn> builtIns = catalogue();
    std::stable_sort(builtIns.begin(), builtIns.end(),
                     [](const BuiltIn& a, const BuiltIn& b) { return a.name < b.name; });
    const ScopePtr scope = TopLevelEnvironment::instance()->getScope();
    ASSERT_EQ(scope->entries().size(), builtIns.size());
    std::map<std::string, const FunctionCodeGenerator*> generators;
    for (std::size_t i = 0; i < builtIns.size(); ++i) {
        const auto& [name, domain, range, generatorClass] = builtIns[i];
        using Functions = OrvConverter<FunctionSymbol, Symbol>;
        const auto function = Functions::toCounted(scope->entries()[i].symbol);
        EXPECT_EQ(std::string(function->getName()) + " : " + printedType(function->getType()),
                  name + " : " + builtIns[i].type());
        EXPECT_EQ(scope->entries()[i].name, name);
        EXPECT_EQ(function->getArity(), split(domain, " * ").size()) << name;
        const FunctionCodeGenerator& generator = *function->getGenerator();
        const std::string mangled = std::to_string(generatorClass.size()) + generatorClass;
        EXPECT_EQ(typeid(generator).name(), mangled) << name;
        EXPECT_EQ(generators.emplace(mangled, &generator).first->second, &generator) << name;
    }
    for (const TypePtr& domain : {TypeExpression::unitType(), TypeExpression::typeError()}) {
        EXPECT_EQ(FunctionSymbol("f", TypePtr(new TEFunction(domain, domain)), {}).getArity(), 0U);
    }
}

// Names of every length up to 18 that differ in one byte or in their ends, each one twice, in an
// order without a pattern.
std::vector<std::string> similarNames() {
    std::vector<std::string> names;
    for (std::size_t length = 0; length <= 18; ++length) {
        const std::string plain(length, 'm');
        names.push_back(plain);
        for (std::size_t i = 0; i < length; ++i) {
            names.push_back(plain);
            names.back()[i] = i % 2 == 0 ? 'a' : '\xe4';
        }
    }
    const std::vector<std::string> once = names;
    names.insert(names.end(), once.begin(), once.end());
    std::shuffle(names.begin(), names.end(), std::minstd_rand(17));
    return names;
}

using Meanings = std::multimap<std::string, SymbolPtr>;

void expectMeanings(const Scope& scope, const Meanings& expected) {
    ASSERT_EQ(scope.entries().size(), expected.size());
    const Scope::Entry* entry = scope.entries().begin();
    for (const auto& [name, symbol] : expected) {
        EXPECT_EQ(entry->name, name);
        EXPECT_EQ((entry++)->symbol, symbol) << name;
    }
    for (const std::string& name : similarNames()) {
        std::vector<SymbolPtr> symbols;
        const auto [first, end] = expected.equal_range(name);
        std::transform(first, end, std::back_inserter(symbols),
                       [](const auto& meaning) { return meaning.second; });
        EXPECT_EQ(scope.lookup(name), symbols) << name;
    }
}

// A scope of any size is the ordered multimap that it stands for, with an index and without.
TEST(Scope, IsAnOrderedMultimap) {
    Meanings expected;
    const ScopePtr scope(new Scope("Path"));
    for (const std::string& name : similarNames()) {
        const SymbolPtr symbol(new VariableSymbol(name, TypeExpression::objectType(), {}));
        scope->insert(symbol->getName(), symbol);
        expected.emplace(name, symbol);
        if (expected.size() <= 10 || expected.size() == 2 * 190) {
            expectMeanings(*scope, expected);
            scope->buildIndex();
            expectMeanings(*scope, expected);
        }
    }
    EXPECT_EQ(expected.size(), 2U * 190U);
}

// Printed trees in short: <Name{key=variable, key=variable!, key@label} <...> <...>>, where "!"
// has no type yet, and S is the outermost scope.
std::string compactScopes(const std::string& printed) {
    const std::vector<std::string> parts = split(
        "Top-level ScopeTree: ||ScopeTree( Scope[|<|]( none )||]( { |{| } )|}| => VariableSymbol("
        " name=|=| => LabelSymbol( name=|@|, type=object )||, type=( object ) collection )||"
        ", type=TypeError )|!| )|>|Specification{current=this, model=this, this=this}|S",
        "|");
    std::string text = replaced(printed, "\"", "");
    for (std::size_t i = 0; i < parts.size(); i += 2) {
        text = replaced(text, parts[i], parts[i + 1]);
    }
    return text;
}

// A text and its scopes, in the order of the text.
TEST(NameSpace, ScopeTrees) {
    for (const std::string& row : textsOf(R"table(
if (a, b < c) then - d and e else f ==> <S <Path> <Path> <Path> <Path> <Path> <Path>>
if not (1 = 2) then - 1 + 2 else integer "x" ==> <S> ;; (1, 0.5, "x", `a`, true, ()) ==> <S>
[a] -> [b] ==> <S <Path>> ;; this ==> <S <Path>> ;; f x ==> <S <Path>>
// The nodes that open scopes: their sources stay outside.
for_all x in a => there_exists x in x => true
 ==> <S <Universal{current=x, x=x} <Existential{current=x, x=x}> <Path>> <Path>>
sort {1} & sortd {$n} over a ==> <S <SortKey{current=current}> <SortKey{current=current} <Path>>
 <Path>>
map {1} over traverse {2} over a ==> <S <Map{current=current}> <Traverse{current=current}> <Path>>
let x = x in let x = x in x ==> <S <Let{x=x!} <Let{x=x!} <Path>> <Path>> <Path>>
there_exists y in [a] => y ==> <S <Existential{current=y, y=y} <Path>> <Path>>
filter {$n = ""} over [a] ==> <S <Filter{current=current} <Path>> <Path>>
for_all a in [a] => a ==> <S <Universal{a=a, current=a} <Path>> <Path>>
let x = 1 in x ==> <S <Let{x=x!} <Path>>> ;; let x = x in 1 ==> <S <Let{x=x!}> <Path>>
// A key that is a path leaves no node to its own scope, so that the path's heads a tree.
sort {[b]} over [a] ==> <S <Path>> + <Path>
// Labels, wherever they stand, and conditions.
x -> ([a]; l:[b]{a}) -> m:[c]{true} ==> <S <Path{l@l, m@m} <DefinitionAssociation{current=current}
 <Path>> <DefinitionAssociation{current=current}>>>
l:[a]{m:[b] = @l} ==> <S <Path{l@l} <DefinitionAssociation{current=current} <Path{m@m}> <Path>>>>
x -> (b:[a] -> d:[a]; @b; a:[c]) -> c:[d] ==> <S <Path{a@a, b@b, c@c, d@d}>>
b:[a] -> @b -> a:[c] ==> <S <Path{a@a, b@b}>> ;; l:[a] -> l:[b] ==> <S <Path{l@l, l@l}>>
)table")) {
        const std::vector<std::string> columns = split(row, " ==> ");
        const TreePtr tree = parse(columns[0]).tree;
        ASSERT_TRUE(tree) << row;
        const OrvCountedPtr<NameSpace> nameSpace = nameSpaceOf(tree);
        std::ostringstream stream;
        NameSpacePrinter(stream).print(*nameSpace);
        EXPECT_EQ(compactScopes(stream.str()), replaced(columns[1], " + ", "\n") + "\n") << row;
        // Each node has one entry; the printed tree repeats what follows a group.
        const std::size_t printedNodes = split(printed(*tree), "@[").size() - 1;
        EXPECT_TRUE(row.find(';') < row.size() || nameSpace->entries().size() == printedNodes);
    }
}

// Scopes of paths that declare nothing are told apart and hide nothing.
TEST(NameSpace, ResolversOfPaths) {
    const TreePtr tree = parse("this = current").tree;
    const OrvCountedPtr<NameSpace> nameSpace = nameSpaceOf(tree);
    const auto& comparison = dynamic_cast<RelationalExpressionNode&>(*tree->getExpr());
    const ASTNode& path = *comparison.getLhs();
    const NameResolverPtr resolver = nameSpace->getResolver(path);
    EXPECT_TRUE(resolver->resolveLocal("this", {}).empty());
    EXPECT_EQ(resolver->resolve("this", {}).size(), 1U);
    EXPECT_EQ(nameSpace->getResolver(comparison)->resolveLocal("this", {}).size(), 1U);
    const ScopePtr scope = nameSpace->scopeOf(path);
    EXPECT_EQ(scope, nameSpace->scopeOf(path));
    EXPECT_FALSE(scope == nameSpace->scopeOf(*comparison.getRhs()));
    EXPECT_EQ(scope->getParent(), nameSpace->scopeOf(comparison));
    EXPECT_FALSE(nameSpace->getResolver(UnitExpressionNode()));
}

// A host may visit a part of a tree: what is looked up there goes on in the outermost scope.
TEST(NameSpace, PathOutsideATree) {
    const TreePtr tree = parse("this").tree;
    CreateNameSpaceVisitor visitor(TopLevelEnvironment::instance()->getScope());
    tree->getExpr()->accept(visitor);
    const OrvCountedPtr<NameSpace>& nameSpace = visitor.getNameSpace();
    EXPECT_FALSE(nameSpace->find(*tree->getExpr(), "size", SymbolKind::function).empty());
    EXPECT_TRUE(nameSpace->getResolver(*tree->getExpr())->resolveLocal("this", {}).empty());
}

TEST(NameSpacePrinter, RefusesScopesThatAreNestedTooDeeplyForTheStack) {
    std::string text = "true";
    for (int level = 0; level < 900; ++level) {
        text.insert(0, "for_all x in [a] => ");
    }
    const OrvCountedPtr<SpecificationNode> tree = parse(text).tree;
    CreateNameSpaceVisitor scopes(TopLevelEnvironment::instance()->getScope());
    tree->accept(scopes);
    std::string thrown;
    const auto body = [&thrown, &scopes] {
        std::ostream silent(nullptr);
        try {
            NameSpacePrinter(silent).print(*scopes.getNameSpace());
        } catch (const OrvException& exception) {
            thrown = exception.what();
        }
    };
    EXPECT_TRUE(runOnStack(std::size_t{64} * 1024, body));
    EXPECT_EQ(thrown, "The scopes are nested too deeply to be printed.");
}

}  // namespace
