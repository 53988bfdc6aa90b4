// The parser of the expression language: from tokens to the syntax tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>

#include "api/ExprParserDialogs.h"
#include "ast/ASTVisitor.h"
#include "foundation/OrvMemoryPool.h"
#include "parser/ColumnTokenBuffer.h"

/// A recursive-descent parser with one operation a rule of the grammar, or for the rules of infix
/// operators together; the productions stand above the operations in the source file.
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
    enum class Binding : std::uint8_t;
    struct Infix;
    struct InfixTable;
    /// Steps of a path that were read: the first one, with its siblings, and the last of each
    /// alternative, to which the next step is hung. Most have one end.
    struct Chain {
        AssociationPtr first;
        AssociationNode* end = nullptr;
        OrvPoolVector<AssociationNode*> otherEnds;
    };

    ExpressionPtr expression();
    ExpressionPtr quantified();
    template <class Quantifier>
    ExpressionPtr quantifier();
    ExpressionPtr letExpression();
    ExpressionPtr ifExpression();
    ExpressionPtr implication();
    ExpressionPtr disjunction();
    ExpressionPtr operation(Binding loosest);
    ExpressionPtr unary();
    ExpressionPtr prefixed(UnaryOperator op);
    ExpressionPtr primary();
    ExpressionPtr parentheses();
    ExpressionPtr constant();
    ExpressionPtr integerLiteral();
    ExpressionPtr realLiteral();
    ExpressionPtr attribute();
    ExpressionPtr ownerOfAttribute();
    ExpressionPtr currentAt(Position at);
    ExpressionPtr applicationOrPath();
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
    static Infix infixOf(int tokenNumber);
    static Binding tighter(Binding binding);
    static Chain chainOf(AssociationPtr step);
    static void addEnds(Chain& chain, const Chain& alternative);
    static AssociationPtr joinAlternatives(const OrvPoolVector<AssociationPtr>& alternatives);

    const ColumnToken& look() { return buffer_.look(); }
    bool isNext(int tokenNumber) { return look().getNumber() == tokenNumber; }
    bool isNext(std::initializer_list<int> tokenNumbers);
    static Position positionOf(const ColumnToken& token) {
        return {token.getLine(), token.getColumn(), token.getOffset()};
    }
    Position position() { return positionOf(look()); }
    Position skip() { return positionOf(take()); }
    /// Takes the next token if it is this one; else fails. `afterOperand` tells that an operator
    /// might have stood here as well.
    Position expect(int tokenNumber, bool afterOperand = false);
    /// Takes the name that must come next. Its text stands in the text that is parsed.
    const ColumnToken& identifier();
    void enterLevel();

    [[noreturn]] void failAtOperand();
    [[noreturn]] void failAfterOperand(const std::string& expected);
    [[noreturn]] void fail(const std::string& expected, const std::string& hint = {});

    const ColumnToken& take() {
        const ColumnToken& token = buffer_.take();
        lastEnd_ = token.getEndOffset();
        return token;
    }
    /// A text for a node.
    OrvRegionText kept(std::string_view text) { return {memory_, text}; }
    /// A node at `position`, of all that was taken since then.
    template <class Node, class... Fields>
    OrvCountedPtr<Node> makeNode(Position position, Fields&&... fields);
    template <class Node, class... Fields>
    OrvCountedPtr<Node> makeSpanned(std::size_t offset, Position position, Fields&&... fields);
    /// The same for an operator that stands at `position`, behind its first operand.
    template <class Node, class... Fields>
    OrvCountedPtr<Node> makeOperation(const ExpressionNode& first, Position position,
                                      Fields&&... fields);
    /// From `offset` to the end of the token that was taken last.
    SourceSpan spanFrom(std::size_t offset, Position position) const {
        return {position.line, position.column, static_cast<std::uint32_t>(offset),
                static_cast<std::uint32_t>(lastEnd_)};
    }

    ColumnTokenBuffer& buffer_;
    ExprParserDialogs& dialogs_;
    OrvMemoryRegion* memory_ = nullptr;  // of the nodes, null outside a compilation
    std::size_t lastEnd_ = 0;            // where the token ended that was taken last
    std::uintptr_t stackLimit_;
    int depth_ = 0;
};
