// What the program does with an expression before it is evaluated.
#pragma once

#include <memory>

#include "ExpressionText.h"
#include "Messages.h"
#include "Options.h"
#include "api/ExprParser.h"
#include "ast/ExpressionNode.h"
#include "codegen/SourceMap.h"
#include "namespace/NameSpace.h"
#include "types/TypeExpression.h"

namespace mmq {

/// A compiled expression: a function that yields a value, or one that yields a collection.
struct CompiledExpression {
    OrvCountedPtr<MMValueAbsExpr> value;
    OrvCountedPtr<MMObjectCollectionAbsExpr> collection;
    /// Where in the text the targets came from.
    std::unique_ptr<SourceMap> map = std::make_unique<SourceMap>();
    /// The name of a bare attribute that is a keyword: the map knows nothing of it.
    OrvCountedPtr<StringConstantNode> keywordName;

    explicit operator bool() const { return value || collection; }
    const MMTarget& target() const {
        return value ? static_cast<const MMTarget&>(*value) : *collection;
    }
};

/// The stages before code generation, as far as they were run.
struct Analysis {
    OrvCountedPtr<SpecificationNode> root;
    OrvCountedPtr<NameSpace> nameSpace;
    TypePtr type;  ///< empty where the expression does not type check
};

/// Parses the text and builds its scopes; empty where the text does not parse. Shows the messages.
Analysis analyze(const ExpressionText& text, Messages& messages);
/// The same, and finds the type, whatever it is.
Analysis analyzeType(const ExpressionText& text, Messages& messages);
/// The same of a text whose messages nobody needs.
Analysis analyzeSilently(const std::string& text);
/// The type of a part of an analysed expression; empty, or the error type, where it has none.
TypePtr typeOf(const Analysis& analysis, ASTNode& part);

/// Shows an error for everything in the text that compilers pass over in silence: characters that
/// the lexer drops, and steps that a path never follows. Returns false if there is one.
bool checkStrictly(const ExpressionText& text, Messages& messages);

/// Compiles as the options say, after checkStrictly(). Shows the messages of that compilation
/// alone; the result is empty where the expression does not compile.
CompiledExpression compile(const ExpressionText& text, As as, Messages& messages);

/// Compiles once more what compile() took, in silence: for another thread, and on it.
CompiledExpression compileAgain(const ExpressionText& text, As as);

}  // namespace mmq
