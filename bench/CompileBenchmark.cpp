// Compilation, stage by stage and as a whole.
//
//   compile_benchmark [benchmark options]
//
// Lexing and parsing read an expression of 1 MB, which is to be parsed within 1 s, and of 2 MB, to
// show that the cost is linear; they report tokens and nodes a second. Whole compilations go to
// dialogs that drop every message.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "api/ExprParser.h"
#include "ast/ASTPrintVisitor.h"
#include "parser/DLGLexer.h"
#include "parser/SyntaxParser.h"

namespace {

/// Drops every message.
class SilentDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {}
};

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

void lex(benchmark::State& state) {
    const std::string text = longExpression(static_cast<std::size_t>(state.range(0)));
    const ColumnToken tokenTemplate;
    std::int64_t tokens = 0;
    for (auto _ : state) {
        DLGStringInput input(text.c_str());
        DLGLexer lexer(&input);
        while (lexer.nextToken(tokenTemplate)->getNumber() != TOKEN_EOF) {
            ++tokens;
        }
    }
    state.SetItemsProcessed(tokens);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(lex)->Arg(1'000'000)->Arg(2'000'000)->Unit(benchmark::kMillisecond);

// Every node is printed with its position.
std::int64_t countNodes(SpecificationNode& root) {
    std::ostringstream printed;
    ASTPrintVisitor printer(printed);
    root.accept(printer);
    const std::string text = printed.str();
    return std::count(text.begin(), text.end(), '@');
}

void parse(benchmark::State& state) {
    const std::string text = longExpression(static_cast<std::size_t>(state.range(0)));
    SilentDialogs dialogs;
    std::ostringstream dropped;
    for (auto _ : state) {
        benchmark::DoNotOptimize(SyntaxParser::parse(dialogs, text.c_str(), dropped));
    }
    const auto root = SyntaxParser::parse(dialogs, text.c_str(), dropped);
    state.SetItemsProcessed(state.iterations() * countNodes(*root));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(parse)->Arg(1'000'000)->Arg(2'000'000)->Unit(benchmark::kMillisecond);

std::string nestedIfs() {
    std::string text;
    for (int i = 0; i < 8; ++i) {
        const std::string number = std::to_string(i);
        text += "if $visibility = \"kind" + number + "\" then \"result " + number + "\" else ";
    }
    return text + "$name";
}

std::string comparisons() {
    std::string text = "$name = \"Class0\"";
    for (int i = 1; i < 50; ++i) {
        text += " or $name = \"Class" + std::to_string(i) + "\"";
    }
    return text;
}

void compile(benchmark::State& state, const std::string& text) {
    SilentDialogs dialogs;
    if (!ExprParser::parseAssociatedAttribute(dialogs, text)) {
        state.SkipWithError("The expression does not compile.");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(ExprParser::parseAssociatedAttribute(dialogs, text));
    }
}
BENCHMARK_CAPTURE(compile, attribute, "$name");
BENCHMARK_CAPTURE(compile, comparison, "$name = \"x\"");
BENCHMARK_CAPTURE(compile, quantifiers,
                  "for_all c in all \"Class\" => (there_exists o in c -> [ownedOperation] => "
                  "size (o -> [ownedParameter]) > 2)");
BENCHMARK_CAPTURE(compile, filters,
                  "string size (this -> [packagedElement]{class current = \"Class\"} -> "
                  "[ownedOperation]{$visibility = \"public\" and $isQuery = \"true\"} -> "
                  "[ownedParameter]{$direction = \"return\" or $type = \"String\"})");
BENCHMARK_CAPTURE(compile, nestedIfs, nestedIfs());
BENCHMARK_CAPTURE(compile, comparisons, comparisons());

}  // namespace

BENCHMARK_MAIN();
