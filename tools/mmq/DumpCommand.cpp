// mmq dump: shows what one stage of the compiler makes of an expression.
#include <iostream>
#include <sstream>
#include <streambuf>

#include "Commands.h"
#include "Compilation.h"
#include "ExitStatus.h"
#include "ast/ASTPrintVisitor.h"
#include "fliodram/MMTargetPrinter.h"
#include "foundation/TextOutput.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/DLGLexer.h"
#include "support/ParseException.h"
#include "types/TypeExprPrintVisitor.h"

namespace mmq {

namespace {

void writeToken(const ColumnToken& token) {
    std::string line = std::to_string(token.getLine()) + ":" + std::to_string(token.getColumn()) +
                       " " + std::to_string(token.getNumber()) + " ";
    line += tokenName(token.getNumber());
    line += " ";
    appendJsonString(line, token.getText());
    std::cout << line << '\n';
}

int dumpTokens(const ExpressionText& text, Messages& messages) {
    DLGStringInput input(text.text().c_str());
    DLGLexer lexer(&input);
    const ColumnToken tokenTemplate;
    try {
        int number = TOKEN_INVALID;
        while (number != TOKEN_EOF) {
            const TokenPtr token = lexer.nextToken(tokenTemplate);
            number = token->getNumber();
            writeToken(*token);
        }
    } catch (const ParseException& exception) {
        messages.showMessage(exception.getLine(), exception.getColumn(), "ExprParser",
                             exception.what(), ExprParserDialogs::Error, false);
        return EXIT_EXPRESSION;
    }
    return EXIT_DONE;
}

/// Thrown where a printed tree becomes longer than anybody will read.
struct OutputTooLarge {};

/// Keeps what is written, up to a limit.
class LimitedBuffer : public std::streambuf {
public:
    const std::string& text() const { return text_; }

protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        constexpr std::size_t limit = std::size_t{64} * 1024 * 1024;
        if (text_.size() + static_cast<std::size_t>(count) > limit) {
            throw OutputTooLarge();
        }
        text_.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type byte) override {
        const char character = traits_type::to_char_type(byte);
        xsputn(&character, 1);
        return byte;
    }

private:
    std::string text_;
};

// A step that follows a group is printed below each alternative, so a tree may print much longer
// than it is.
int dumpTree(SpecificationNode& root) {
    LimitedBuffer buffer;
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    ASTPrintVisitor printer(stream);
    try {
        root.accept(printer);
    } catch (const OutputTooLarge&) {
        std::cerr << "mmq: The printed tree is longer than 64 MiB.\n";
        return EXIT_EVALUATION;
    }
    std::cout << buffer.text() << '\n';
    return EXIT_DONE;
}

int dumpScopes(const Analysis& analysis) {
    NameSpacePrinter(std::cout).print(*analysis.nameSpace);
    return EXIT_DONE;
}

int dumpType(const ExpressionText& text, Messages& messages) {
    const Analysis analysis = analyzeType(text, messages);
    if (!analysis.type || messages.errorCount() != 0) {
        return EXIT_EXPRESSION;
    }
    std::cout << printedType(analysis.type) << '\n';
    return EXIT_DONE;
}

int dumpTarget(const ExpressionText& text, As as, Messages& messages) {
    const CompiledExpression compiled = compile(text, as, messages);
    if (!compiled) {
        return EXIT_EXPRESSION;
    }
    std::cout << printedTarget(compiled.target()) << '\n';
    return EXIT_DONE;
}

int dumpStage(const Options& options, const ExpressionText& text, Messages& messages) {
    if (options.stage == Stage::tokens) {
        return dumpTokens(text, messages);
    }
    if (options.stage == Stage::target) {
        return dumpTarget(text, options.as, messages);
    }
    if (!checkStrictly(text, messages)) {
        return EXIT_EXPRESSION;
    }
    if (options.stage == Stage::type) {
        return dumpType(text, messages);
    }
    const Analysis analysis = analyze(text, messages);
    if (!analysis.root) {
        return EXIT_EXPRESSION;
    }
    return options.stage == Stage::ast ? dumpTree(*analysis.root) : dumpScopes(analysis);
}

}  // namespace

int runDump(const Options& options) {
    if (options.stage == Stage::builtins) {
        ScopePrinter(std::cout).print(*TopLevelEnvironment::instance()->getScope());
        std::cout << '\n';
        return EXIT_DONE;
    }
    const ExpressionText text = readExpression(options);
    Messages messages(text, options, options.isVerbose);
    return dumpStage(options, text, messages);
}

}  // namespace mmq
