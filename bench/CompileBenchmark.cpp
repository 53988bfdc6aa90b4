// Compilation beside the compilers of other query and script languages, and stage by stage.
//
//   compile_benchmark [benchmark options]
//
// "shapes/SHAPE/ENGINE" compiles one meaning: from the text to what can be evaluated, messages
// included, to dialogs that drop them. The peers keep their tables and states between rounds.
// "growth/COUNT/ENGINE" compiles longer and longer texts of one shape, "lex/BYTES/ours" and
// "parse/BYTES/ours" read texts of 1 and 2 MB; they show whether the cost is linear.
#include <benchmark/benchmark.h>
#include <libxml/xpath.h>
#include <malloc.h>

#include <iostream>
#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>

#include "ExpressionShapes.h"
#include "ScriptEngine.h"
#include "SilentDialogs.h"
#include "api/ExprParser.h"
#include "foundation/OrvMemoryRegion.h"
#include "parser/DLGLexer.h"
#include "parser/SyntaxParser.h"

namespace {

// Reads the tokens as the parser does.
std::int64_t countTokens(const std::string& text) {
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input);
    std::int64_t tokens = -1;  // without the end
    ColumnToken token;
    do {
        lexer.readToken(token);
        ++tokens;
    } while (token.getNumber() != TOKEN_EOF);
    return tokens;
}

void compile(const std::string& text) {
    SilentDialogs dialogs;
    const auto compiled = ExprParser::parseAssociatedAttribute(dialogs, text);
    if (!compiled) {
        throw std::runtime_error("An expression does not compile: " + text);
    }
    benchmark::DoNotOptimize(compiled);
}

void compilePugixml(const std::string& text) {
    const pugi::xpath_query query(text.c_str());
    benchmark::DoNotOptimize(query.result().offset);
}

/// Compiles with the tables of one context.
class LibxmlCompiler {
public:
    LibxmlCompiler() : context_(xmlXPathNewContext(nullptr), xmlXPathFreeContext) {}

    void operator()(const std::string& text) const {
        const auto* const bytes = reinterpret_cast<const xmlChar*>(text.c_str());
        xmlXPathCompExpr* const compiled = xmlXPathCtxtCompile(context_.get(), bytes);
        if (compiled == nullptr) {
            throw std::runtime_error("An XPath does not compile: " + text);
        }
        xmlXPathFreeCompExpr(compiled);
    }

private:
    std::shared_ptr<xmlXPathContext> context_;
};

// What each round does is done once before, so that an error ends the program.
template <class Action>
void add(const std::string& name, const std::string& text, const Action& action) {
    action(text);
    benchmark::RegisterBenchmark(name.c_str(), [text, action](benchmark::State& state) {
        for (auto _ : state) {
            action(text);
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

void addShapes(ScriptEngine& luajit, ScriptEngine& lua) {
    const LibxmlCompiler compileLibxml;
    add("shapes/attribute/ours", "$name", compile);
    for (const ExpressionShape& shape : expressionShapes()) {
        const std::string prefix = "shapes/" + shape.name + "/";
        add(prefix + "ours", shape.expression, compile);
        add(prefix + "lexer", shape.expression,
            [](const std::string& text) { benchmark::DoNotOptimize(countTokens(text)); });
        if (!shape.xpath.empty()) {
            add(prefix + "pugixml", shape.xpath, compilePugixml);
            add(prefix + "libxml2", shape.xpath, compileLibxml);
        }
        add(prefix + "luajit", shape.lua, [&](const std::string& text) { luajit.load(text); });
        add(prefix + "lua", shape.lua, [&](const std::string& text) { lua.load(text); });
    }
}

// A sum of some kinds of operands, as long as is wanted.
std::string longExpression(std::size_t size) {
    const std::string operand =
        "size (this -> [ownedOperation]{$visibility = \"public\"}) * (2 - 1) + "
        "(if $name ~= \"a.*\" then 1 else integer $lower)\n + ";
    std::string text;
    while (text.size() < size) {
        text += operand;
    }
    return text + "1";
}

// In the memory of a compilation.
void parse(const std::string& text) {
    const OrvCompilationMemory memory;
    SilentDialogs dialogs;
    std::ostringstream dropped;
    benchmark::DoNotOptimize(SyntaxParser::parse(dialogs, text.c_str(), dropped));
}

void addGrowth(ScriptEngine& luajit) {
    const LibxmlCompiler compileLibxml;
    for (const int count : {50, 500, 5000}) {
        const ExpressionShape shape = comparisonsShape(count);
        const std::string prefix = "growth/" + std::to_string(count) + "/";
        add(prefix + "ours", shape.expression, compile);
        add(prefix + "libxml2", shape.xpath, compileLibxml);
        add(prefix + "luajit", shape.lua, [&](const std::string& text) { luajit.load(text); });
    }
}

void addLongTexts() {
    for (const std::size_t size : {1'000'000U, 2'000'000U}) {
        add("lex/" + std::to_string(size) + "/ours", longExpression(size),
            [](const std::string& text) { benchmark::DoNotOptimize(countTokens(text)); });
        add("parse/" + std::to_string(size) + "/ours", longExpression(size), parse);
    }
}

}  // namespace

int main(int argc, char** argv) try {
    // Otherwise whoever frees the end of the heap gives it back to the system, and takes it again.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    const auto luajit = openScriptEngine(LUAJIT_ENGINE);
    const auto lua = openScriptEngine(LUA_ENGINE);
    addShapes(*luajit, *lua);
    addGrowth(*luajit);
    addLongTexts();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
}
