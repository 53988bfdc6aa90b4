// The parser of the expression language: from tokens to the syntax tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "api/ExprParserDialogs.h"
#include "ast/ASTVisitor.h"
#include "parser/ColumnTokenBuffer.h"

/// A recursive-descent parser with one operation a rule of the grammar; the productions stand
/// above the operations in the source file.
///
/// The tree is what was written: nothing is rewritten here. Left-associative operators are read in
/// a loop and may form chains as long as a text; everything else may nest to maximumDepth levels,
/// or as deep as the thread's stack allows. Borrows the buffer and the dialogs; made on the stack
/// for one text.
class SyntaxParser {
public:
    /// How deep constructs may nest: parentheses, operands of prefix operators, arguments, bodies
    /// and branches, operands of "implies", and the steps and alternatives of a path.
    static constexpr int maximumDepth = 1000;

    /// Parses `text`, up to its NUL, with a lexer and a buffer of its own: what specification()
    /// returns and throws. Characters that the lexer drops are reported on `errorStream`.
    static OrvCountedPtr<SpecificationNode> parse(ExprParserDialogs& dialogs, const char* text,
                                                  std::ostream& errorStream);

    SyntaxParser(ColumnTokenBuffer& buffer, ExprParserDialogs& dialogs);
    SyntaxParser(const SyntaxParser&) = delete;
    SyntaxParser& operator=(const SyntaxParser&) = delete;

    /// Makes the parser ready for the text that the buffer starts with.
    void init();

    /// The start rule: parses the whole text. Returns an empty pointer after showing one error
    /// that says what was found and what was expected. Throws ParseException for a lexical error,
    /// for a number that is too large and for nesting that is too deep.
    OrvCountedPtr<SpecificationNode> specification();

private:
    /// Where a token begins.
    struct Position {
        int line;
        int column;
        std::size_t offset;
    };
    struct SyntaxError;
    class Level;
    /// Steps of a path that were read: the first one, with its siblings, and the last of each
    /// alternative, to which the next step is hung.
    struct Chain {
        AssociationPtr first;
        std::vector<AssociationNode*> ends;
    };

    ExpressionPtr expression();
    ExpressionPtr quantified();
    template <class Quantifier>
    ExpressionPtr quantifier();
    ExpressionPtr letExpression();
    ExpressionPtr ifExpression();
    ExpressionPtr implication();
    ExpressionPtr disjunction();
    ExpressionPtr conjunction();
    ExpressionPtr relation();
    ExpressionPtr sum();
    ExpressionPtr product();
    ExpressionPtr unary();
    ExpressionPtr prefixed(UnaryOperator op);
    ExpressionPtr primary();
    ExpressionPtr parentheses();
    ExpressionPtr constant();
    ExpressionPtr integerLiteral();
    ExpressionPtr realLiteral();
    ExpressionPtr attribute();
    ExpressionPtr application();
    template <class Iteration>
    ExpressionPtr iteration();
    ExpressionPtr sort();
    SortKey sortKey();
    ExpressionPtr path();
    ExpressionPtr anchoredPath();
    ExpressionPtr unanchoredPath();
    AssociationPtr chain();
    Chain chainSteps();
    Chain step();
    Chain group();
    Chain reference();
    Chain definition();

    ExpressionPtr nestedExpression();
    ExpressionPtr nestedQuantified();
    ExpressionPtr nestedPrimary();
    ExpressionPtr bracedExpression();
    static AssociationPtr joinAlternatives(const std::vector<AssociationPtr>& alternatives);

    const ColumnToken& look(std::size_t ahead = 1) { return buffer_.look(ahead); }
    bool isNext(int tokenNumber) { return look().getNumber() == tokenNumber; }
    bool isNext(std::initializer_list<int> tokenNumbers);
    Position position();
    Position skip();
    /// Takes the next token if it is this one; else fails. `afterOperand` tells that an operator
    /// might have stood here as well.
    Position expect(int tokenNumber, bool afterOperand = false);
    std::string identifier();
    void enterLevel();

    [[noreturn]] void failAtOperand();
    [[noreturn]] void failAfterOperand(const std::string& expected);
    [[noreturn]] void fail(const std::string& expected, const std::string& hint = {});

    const ColumnToken& take();
    /// A node at `position`, of all that was taken since then.
    template <class Node, class... Fields>
    OrvCountedPtr<Node> makeNode(Position position, Fields&&... fields);
    /// The same for an operator that stands at `position`, behind its first operand.
    template <class Node, class... Fields>
    OrvCountedPtr<Node> makeOperation(const ExpressionNode& first, Position position,
                                      Fields&&... fields);
    SourceSpan spanFrom(std::size_t offset, Position position) const;

    ColumnTokenBuffer& buffer_;
    ExprParserDialogs& dialogs_;
    std::size_t lastEnd_ = 0;  // where the token ended that was taken last
    std::uintptr_t stackLimit_;
    int depth_ = 0;
};
