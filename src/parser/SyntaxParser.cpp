// One operation a rule, from the loosest binding to the tightest. Each decides by the next token,
// but for what starts with an identifier, where the token after it is looked at as well. An
// operation that reads left-associative operators loops; one that recurses enters a level, which
// is where depth is limited. The five rules of infix operators are one operation: most operands
// have none, and would go down through all of them. A syntax error is an exception of the parser's
// own, which the start rule turns into a message.
#include "parser/SyntaxParser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "foundation/TextOutput.h"
#include "parser/DLGLexer.h"
#include "support/OrvStack.h"
#include "support/ParseException.h"

/// Leaves the parser as soon as a token does not fit; caught by the start rule.
struct SyntaxParser::SyntaxError {
    std::string message;
    Position position;
};

/// The rules of infix operators, from the loosest; `operand` is what binds tighter than all.
enum class SyntaxParser::Binding : std::uint8_t {
    none,
    disjunction,
    conjunction,
    relation,
    sum,
    product,
    operand
};

/// The rule that reads an operator, and the operator where it is not a comparison.
struct SyntaxParser::Infix {
    Binding binding = Binding::none;
    BinaryOperator op = BinaryOperator::IMPLIES;
};

/// The operators by their tokens.
struct SyntaxParser::InfixTable {
    constexpr InfixTable() {
        for (std::size_t token = TOKEN_EQUAL; token <= TOKEN_GREATER_EQUAL; ++token) {
            infixes[token].binding = Binding::relation;
        }
        infixes[TOKEN_OR] = {Binding::disjunction, BinaryOperator::OR};
        infixes[TOKEN_AND] = {Binding::conjunction, BinaryOperator::AND};
        infixes[TOKEN_PLUS] = {Binding::sum, BinaryOperator::ADD};
        infixes[TOKEN_MINUS] = {Binding::sum, BinaryOperator::SUBTRACT};
        infixes[TOKEN_STAR] = {Binding::product, BinaryOperator::MULTIPLY};
        infixes[TOKEN_SLASH] = {Binding::product, BinaryOperator::DIVIDE};
    }

    std::array<Infix, TOKEN_FALSE + 1> infixes;
};

/// Restores the depth that was reached when it was made.
class SyntaxParser::Level {
public:
    explicit Level(SyntaxParser& parser) : depth_(parser.depth_), outer_(parser.depth_) {}
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() { depth_ = outer_; }

private:
    int& depth_;
    int outer_;
};

namespace {

// A text that a message quotes, cut where it is long.
std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::string result;
    appendJsonString(result, text.substr(0, longest));
    return text.size() <= longest ? result : result + "...";
}

std::string describe(const ColumnToken& token) {
    switch (token.getNumber()) {
        case TOKEN_EOF:
            return "the end of the text";
        case TOKEN_STRING_LITERAL:
            return "the string " + quoted(token.text());
        case TOKEN_ASSOCIATION_NAME:
            return "the association name " + quoted(token.text());
        case TOKEN_REGULAR_EXPRESSION:
            return "the pattern " + quoted(token.text());
        default:
            return quoted(token.text());
    }
}

bool isRelationalOperator(int tokenNumber) {
    return tokenNumber >= TOKEN_EQUAL && tokenNumber <= TOKEN_GREATER_EQUAL;
}

bool isConversion(int tokenNumber) {
    return tokenNumber >= TOKEN_STRING && tokenNumber <= TOKEN_BOOLEAN;
}

bool isQuantified(int tokenNumber) {
    return tokenNumber == TOKEN_FOR_ALL || tokenNumber == TOKEN_THERE_EXISTS ||
           tokenNumber == TOKEN_LET || tokenNumber == TOKEN_IF;
}

bool isConstant(int tokenNumber) {
    return tokenNumber == TOKEN_INTEGER_LITERAL || tokenNumber == TOKEN_REAL_LITERAL ||
           tokenNumber == TOKEN_STRING_LITERAL || tokenNumber == TOKEN_REGULAR_EXPRESSION ||
           tokenNumber == TOKEN_TRUE || tokenNumber == TOKEN_FALSE;
}

bool canBeginPath(int tokenNumber) {
    return (tokenNumber >= TOKEN_THIS && tokenNumber <= TOKEN_MODEL) || tokenNumber == TOKEN_AT ||
           tokenNumber == TOKEN_CARET || tokenNumber == TOKEN_UNDERSCORE ||
           tokenNumber == TOKEN_ASSOCIATION_NAME || tokenNumber == TOKEN_VARIABLE_OR_FUNCTION;
}

bool canBeginPrimary(int tokenNumber) {
    return tokenNumber == TOKEN_LEFT_PARENTHESIS || tokenNumber == TOKEN_DOLLAR ||
           (tokenNumber >= TOKEN_MAP && tokenNumber <= TOKEN_SORTD) || isConstant(tokenNumber) ||
           isConversion(tokenNumber) || canBeginPath(tokenNumber);
}

}  // namespace

SyntaxParser::SyntaxParser(ColumnTokenBuffer& buffer, ExprParserDialogs& dialogs)
    : buffer_(buffer), dialogs_(dialogs), stackLimit_(OrvStack::limit()) {}

void SyntaxParser::init() {
    memory_ = OrvCompilationMemory::nodes();
    depth_ = 0;
    lastEnd_ = 0;
}

OrvCountedPtr<SpecificationNode> SyntaxParser::parse(ExprParserDialogs& dialogs, const char* text,
                                                     std::ostream& errorStream) {
    DLGStringInput input(text);
    DLGLexer lexer(&input, DLGLexer::defaultBufferSize, errorStream);
    ColumnTokenBuffer buffer(lexer, ColumnTokenBuffer::defaultDepth,
                             ColumnTokenBuffer::defaultChunk);
    const ColumnToken tokenTemplate;
    buffer.setTemplate(tokenTemplate);
    SyntaxParser parser(buffer, dialogs);
    parser.init();
    return parser.specification();
}

template <class Node, class... Fields>
OrvCountedPtr<Node> SyntaxParser::makeSpanned(std::size_t offset, Position position,
                                              Fields&&... fields) {
    OrvCountedPtr<Node> node(new (memory_) Node(std::forward<Fields>(fields)...));
    node->setSpan(spanFrom(offset, position));
    return node;
}

template <class Node, class... Fields>
OrvCountedPtr<Node> SyntaxParser::makeNode(Position position, Fields&&... fields) {
    return makeSpanned<Node>(position.offset, position, std::forward<Fields>(fields)...);
}

template <class Node, class... Fields>
OrvCountedPtr<Node> SyntaxParser::makeOperation(const ExpressionNode& first, Position position,
                                                Fields&&... fields) {
    return makeSpanned<Node>(first.getSpan().offset, position, std::forward<Fields>(fields)...);
}

// ---------------------------------------------------------------- tokens, levels and errors

bool SyntaxParser::isNext(std::initializer_list<int> tokenNumbers) {
    return std::find(tokenNumbers.begin(), tokenNumbers.end(), look().getNumber()) !=
           tokenNumbers.end();
}

SyntaxParser::Position SyntaxParser::expect(int tokenNumber, bool afterOperand) {
    if (!isNext(tokenNumber)) {
        const std::string expected = quoted(tokenName(tokenNumber));
        if (afterOperand) {
            failAfterOperand(expected);
        }
        fail(expected);
    }
    return skip();
}

const ColumnToken& SyntaxParser::identifier() {
    if (!isNext(TOKEN_VARIABLE_OR_FUNCTION)) {
        fail("a name");
    }
    return take();
}

void SyntaxParser::enterLevel() {
    if (++depth_ > maximumDepth || OrvStack::isBelow(stackLimit_)) {
        const Position here = position();
        throwLogged(ParseException("Expression is nested too deeply.", here.line, here.column));
    }
}

void SyntaxParser::fail(const std::string& expected, const std::string& hint) {
    throw SyntaxError{"Expected " + expected + ", but found " + describe(look()) + "." + hint,
                      position()};
}

void SyntaxParser::failAtOperand() {
    if (isQuantified(look().getNumber())) {
        const std::string word = look().getText();
        throw SyntaxError{
            "As an operand, \"" + word + "\" needs parentheses: write \"(" + word + " ...)\".",
            position()};
    }
    fail("an expression");
}

void SyntaxParser::failAfterOperand(const std::string& expected) {
    if (isRelationalOperator(look().getNumber())) {
        fail(expected, " Comparisons do not chain: put one of them in parentheses.");
    }
    if (isNext(TOKEN_BAR_ARROW)) {
        fail(expected, " \"|=>\" takes two operands: put two of them in parentheses.");
    }
    fail(expected);
}

// ---------------------------------------------------------------- rules

// specification: expression EOF
OrvCountedPtr<SpecificationNode> SyntaxParser::specification() {
    try {
        const Position start = position();
        ExpressionPtr whole = expression();
        if (!isNext(TOKEN_EOF)) {
            failAfterOperand("an operator or the end of the text");
        }
        return makeNode<SpecificationNode>(start, std::move(whole));
    } catch (const SyntaxError& error) {
        dialogs_.showMessage(error.position.line, error.position.column, "ExprParser",
                             error.message, ExprParserDialogs::Error, false);
        return {};
    }
}

// expression: quantified [ "|=>" quantified ]
ExpressionPtr SyntaxParser::expression() {
    ExpressionPtr left = quantified();
    if (!isNext(TOKEN_BAR_ARROW)) {
        return left;
    }
    const Position at = skip();
    ExpressionPtr right = quantified();
    ExpressionPtr operands =
        makeOperation<TupleExpressionNode>(*left, at, left, std::move(right), memory_);
    return makeOperation<ApplicationExpressionNode>(
        *left, at, OrvRegionText::constant("alternation"), std::move(operands));
}

ExpressionPtr SyntaxParser::nestedExpression() {
    const Level level(*this);
    enterLevel();
    return expression();
}

ExpressionPtr SyntaxParser::nestedQuantified() {
    const Level level(*this);
    enterLevel();
    return quantified();
}

// quantified: "for_all" NAME "in" expression "=>" quantified
//           | "there_exists" NAME "in" expression "=>" quantified
//           | "let" NAME "=" expression "in" quantified
//           | "if" expression "then" expression "else" quantified
//           | implication
ExpressionPtr SyntaxParser::quantified() {
    switch (look().getNumber()) {
        case TOKEN_FOR_ALL:
            return quantifier<UniversalQuantifierNode>();
        case TOKEN_THERE_EXISTS:
            return quantifier<ExistentialQuantifierNode>();
        case TOKEN_LET:
            return letExpression();
        case TOKEN_IF:
            return ifExpression();
        default:
            return implication();
    }
}

template <class Quantifier>
ExpressionPtr SyntaxParser::quantifier() {
    const Position at = skip();
    const std::string_view name = identifier().text();
    expect(TOKEN_IN);
    ExpressionPtr source = nestedExpression();
    expect(TOKEN_DOUBLE_ARROW, true);
    ExpressionPtr body = nestedQuantified();
    return makeNode<Quantifier>(at, kept(name), std::move(source), std::move(body));
}

ExpressionPtr SyntaxParser::letExpression() {
    const Position at = skip();
    const std::string_view name = identifier().text();
    expect(TOKEN_EQUAL);
    ExpressionPtr source = nestedExpression();
    expect(TOKEN_IN, true);
    ExpressionPtr body = nestedQuantified();
    return makeNode<LetExpressionNode>(at, kept(name), std::move(source), std::move(body));
}

ExpressionPtr SyntaxParser::ifExpression() {
    const Position at = skip();
    ExpressionPtr test = nestedExpression();
    expect(TOKEN_THEN, true);
    ExpressionPtr thenBranch = nestedExpression();
    expect(TOKEN_ELSE, true);
    ExpressionPtr elseBranch = nestedQuantified();
    return makeNode<IfExpressionNode>(at, std::move(test), std::move(thenBranch),
                                      std::move(elseBranch));
}

// implication: disjunction [ "implies" implication ]
ExpressionPtr SyntaxParser::implication() {
    ExpressionPtr left = disjunction();
    if (!isNext(TOKEN_IMPLIES)) {
        return left;
    }
    const Level level(*this);
    enterLevel();
    const Position at = skip();
    ExpressionPtr right = implication();
    return makeOperation<BinaryExpressionNode>(*left, at, BinaryOperator::IMPLIES, std::move(left),
                                               std::move(right));
}

ExpressionPtr SyntaxParser::disjunction() { return operation(Binding::disjunction); }

SyntaxParser::Infix SyntaxParser::infixOf(int tokenNumber) {
    static constexpr InfixTable table;
    return table.infixes[static_cast<std::size_t>(tokenNumber)];
}

SyntaxParser::Binding SyntaxParser::tighter(Binding binding) {
    return static_cast<Binding>(static_cast<int>(binding) + 1);
}

// disjunction: conjunction ( "or" conjunction )*
// conjunction: relation ( "and" relation )*
// relation: sum [ ( "=" | "<>" | "~=" | "~<>" | "<" | "<=" | ">" | ">=" ) sum ]
// sum: product ( ( "+" | "-" ) product )*
// product: unary ( ( "*" | "/" ) unary )*
//
// One of these rules, with those below it. What was read is the left operand of the operator that
// comes next, unless that belongs to a rule above `loosest`, or below the one that was read last: a
// second comparison, which is an operand of none.
ExpressionPtr SyntaxParser::operation(Binding loosest) {
    ExpressionPtr left = unary();
    for (Binding tightest = Binding::product;;) {
        const int tokenNumber = look().getNumber();
        const Infix infix = infixOf(tokenNumber);
        if (infix.binding < loosest || infix.binding > tightest) {
            return left;
        }
        const Position at = skip();
        ExpressionPtr right = operation(tighter(infix.binding));
        if (infix.binding == Binding::relation) {
            // Tokens and operators stand in the same order.
            const auto op = static_cast<RelationalOperator>(tokenNumber - TOKEN_EQUAL);
            left = makeOperation<RelationalExpressionNode>(*left, at, op, std::move(left),
                                                           std::move(right));
            tightest = Binding::conjunction;
        } else {
            left = makeOperation<BinaryExpressionNode>(*left, at, infix.op, std::move(left),
                                                       std::move(right));
            tightest = infix.binding;
        }
    }
}

// unary: "not" unary | "-" unary | primary
ExpressionPtr SyntaxParser::unary() {
    switch (look().getNumber()) {
        case TOKEN_NOT:
            return prefixed(UnaryOperator::NOT);
        case TOKEN_MINUS:
            return prefixed(UnaryOperator::MINUS);
        default:
            return primary();
    }
}

ExpressionPtr SyntaxParser::prefixed(UnaryOperator op) {
    const Level level(*this);
    enterLevel();
    const Position at = skip();
    ExpressionPtr operand = unary();
    return makeNode<UnaryExpressionNode>(at, op, std::move(operand));
}

// primary: parentheses | constant | attribute | conversion | application | map | filter | traverse
//        | sort | path
// conversion: ( "string" | "integer" | "real" | "boolean" ) primary
// application: NAME primary
ExpressionPtr SyntaxParser::primary() {
    switch (look().getNumber()) {
        case TOKEN_DOLLAR:
            return attribute();
        case TOKEN_INTEGER_LITERAL:
            return integerLiteral();
        case TOKEN_REAL_LITERAL:
            return realLiteral();
        case TOKEN_STRING_LITERAL:
        case TOKEN_REGULAR_EXPRESSION:
        case TOKEN_TRUE:
        case TOKEN_FALSE:
            return constant();
        case TOKEN_VARIABLE_OR_FUNCTION:
            return applicationOrPath();
        case TOKEN_STRING:
        case TOKEN_INTEGER:
        case TOKEN_REAL:
        case TOKEN_BOOLEAN:
            return application();
        case TOKEN_LEFT_PARENTHESIS:
            return parentheses();
        case TOKEN_MAP:
            return iteration<MapExpressionNode>();
        case TOKEN_FILTER:
            return iteration<FilterExpressionNode>();
        case TOKEN_TRAVERSE:
            return iteration<TraverseExpressionNode>();
        case TOKEN_SORT:
        case TOKEN_SORTD:
            return sort();
        default:
            return path();
    }
}

ExpressionPtr SyntaxParser::applicationOrPath() {
    return canBeginPrimary(buffer_.look(2).getNumber()) ? application() : path();
}

ExpressionPtr SyntaxParser::nestedPrimary() {
    const Level level(*this);
    enterLevel();
    return primary();
}

// parentheses: "(" ")" | "(" expression ")" | "(" expression ( "," expression )+ ")"
ExpressionPtr SyntaxParser::parentheses() {
    const Level level(*this);
    enterLevel();
    const Position at = skip();
    if (isNext(TOKEN_RIGHT_PARENTHESIS)) {
        skip();
        return makeNode<UnitExpressionNode>(at);
    }
    ExpressionPtr first = expression();
    if (isNext(TOKEN_RIGHT_PARENTHESIS)) {
        skip();
        const SourceSpan& inner = first->getSpan();
        first->setSpan(spanFrom(at.offset, {inner.line, inner.column, inner.offset}));
        return first;
    }
    const auto tuple = makeNode<TupleExpressionNode>(at, memory_);
    tuple->addElement(std::move(first));
    while (isNext(TOKEN_COMMA)) {
        skip();
        tuple->addElement(expression());
    }
    if (!isNext(TOKEN_RIGHT_PARENTHESIS)) {
        failAfterOperand("\",\" or \")\"");
    }
    skip();
    tuple->setSpan(spanFrom(at.offset, at));
    return tuple;
}

// constant: INTEGER_LITERAL | REAL_LITERAL | STRING_LITERAL | RegularExpression | "true" | "false"
ExpressionPtr SyntaxParser::constant() {
    const ColumnToken& token = take();
    const Position at = positionOf(token);
    switch (token.getNumber()) {
        case TOKEN_STRING_LITERAL:
            return makeNode<StringConstantNode>(at, kept(token.text()));
        case TOKEN_REGULAR_EXPRESSION:
            return makeNode<RegExpConstantNode>(at, kept(token.text()));
        default:
            return makeNode<BooleanConstantNode>(at, token.getNumber() == TOKEN_TRUE);
    }
}

ExpressionPtr SyntaxParser::integerLiteral() {
    const ColumnToken& token = take();
    const Position at = positionOf(token);
    const std::string_view literal = token.text();
    std::int32_t value = 0;
    const auto result = std::from_chars(literal.data(), literal.data() + literal.size(), value);
    if (result.ec != std::errc()) {
        throwLogged(ParseException(
            "The integer " + quoted(literal) + " is too large; the largest is 2147483647.", at.line,
            at.column));
    }
    return makeNode<IntegerConstantNode>(at, value);
}

ExpressionPtr SyntaxParser::realLiteral() {
    const ColumnToken& token = take();
    const Position at = positionOf(token);
    const std::string_view literal = token.text();
    double value = 0.0;
    const auto result = std::from_chars(literal.data(), literal.data() + literal.size(), value);
    // Out of range is too large, unless nothing but zeros stands before the point.
    if (result.ec != std::errc() && literal.find_first_not_of('0') < literal.find('.')) {
        throwLogged(
            ParseException("The real " + quoted(literal) + " is too large.", at.line, at.column));
    }
    return makeNode<RealConstantNode>(at, value);
}

// The object whose attribute is meant where none is written: it has a place and no bytes.
inline ExpressionPtr SyntaxParser::currentAt(Position at) {
    OrvCountedPtr<PathNode> node(new (memory_) PathNode(AnchorKind::CURRENT));
    const auto offset = static_cast<std::uint32_t>(at.offset);
    node->setSpan({at.line, at.column, offset, offset});
    return node;
}

// attribute: "$" NAME [ "of" primary ]
ExpressionPtr SyntaxParser::attribute() {
    const Position at = skip();
    const ColumnToken& name = identifier();
    ExpressionPtr text = makeNode<StringConstantNode>(positionOf(name), kept(name.text()));
    ExpressionPtr object = isNext(TOKEN_OF) ? ownerOfAttribute() : currentAt(at);
    ExpressionPtr arguments =
        makeNode<TupleExpressionNode>(at, std::move(text), std::move(object), memory_);
    return makeNode<ApplicationExpressionNode>(at, OrvRegionText::constant("attribute"),
                                               std::move(arguments));
}

ExpressionPtr SyntaxParser::ownerOfAttribute() {
    skip();
    return nestedPrimary();
}

ExpressionPtr SyntaxParser::application() {
    const ColumnToken& function = take();
    const Position at = positionOf(function);
    const std::string_view name = function.text();
    ExpressionPtr argument = nestedPrimary();
    return makeNode<ApplicationExpressionNode>(at, kept(name), std::move(argument));
}

ExpressionPtr SyntaxParser::bracedExpression() {
    expect(TOKEN_LEFT_BRACE);
    ExpressionPtr inner = nestedExpression();
    expect(TOKEN_RIGHT_BRACE, true);
    return inner;
}

// map, filter, traverse: KEYWORD "{" expression "}" "over" primary
template <class Iteration>
ExpressionPtr SyntaxParser::iteration() {
    const Position at = skip();
    ExpressionPtr inner = bracedExpression();
    expect(TOKEN_OVER);
    ExpressionPtr source = nestedPrimary();
    return makeNode<Iteration>(at, std::move(inner), std::move(source));
}

// sort: sort-key ( "&" sort-key )* "over" primary
ExpressionPtr SyntaxParser::sort() {
    const Position at = position();
    SortKeys keys{OrvRegionAllocator<SortKey>(memory_)};
    keys.push_back(sortKey());
    while (isNext(TOKEN_AMPERSAND)) {
        skip();
        keys.push_back(sortKey());
    }
    if (!isNext(TOKEN_OVER)) {
        fail("\"&\" or \"over\"");
    }
    skip();
    ExpressionPtr source = nestedPrimary();
    return makeNode<SortExpressionNode>(at, std::move(keys), std::move(source));
}

// sort-key: ( "sort" | "sortd" ) "{" expression "}"
SortKey SyntaxParser::sortKey() {
    if (!isNext({TOKEN_SORT, TOKEN_SORTD})) {
        fail("\"sort\" or \"sortd\"");
    }
    const bool isAscending = isNext(TOKEN_SORT);
    skip();
    return SortKey(bracedExpression(), isAscending);
}

// path: anchor [ "->" chain ] | chain
ExpressionPtr SyntaxParser::path() {
    const int tokenNumber = look().getNumber();
    if (!canBeginPath(tokenNumber)) {
        failAtOperand();
    }
    const bool isAnchor = tokenNumber >= TOKEN_THIS && tokenNumber <= TOKEN_MODEL;
    const bool isName =
        tokenNumber == TOKEN_VARIABLE_OR_FUNCTION && buffer_.look(2).getNumber() != TOKEN_COLON;
    return isAnchor || isName ? anchoredPath() : unanchoredPath();
}

// anchor: "this" | "current" | "model" | NAME
ExpressionPtr SyntaxParser::anchoredPath() {
    const ColumnToken& token = take();
    const Position at = positionOf(token);
    const std::string_view anchor = token.text();
    if (!isNext(TOKEN_ARROW)) {
        return makeNode<PathNode>(at, kept(anchor));
    }
    skip();
    AssociationPtr steps = chain();
    return makeNode<PathNode>(at, kept(anchor), std::move(steps));
}

ExpressionPtr SyntaxParser::unanchoredPath() {
    const Position at = position();
    AssociationPtr steps = chain();
    return makeNode<PathNode>(at, AnchorKind::CURRENT, std::move(steps));
}

// Steps and alternatives each enter a level and leave it with the path: nested or in a row, they
// make the tree deeper.
AssociationPtr SyntaxParser::chain() {
    const Level level(*this);
    return chainSteps().first;
}

// chain: step ( "->" step )*
SyntaxParser::Chain SyntaxParser::chainSteps() {
    Chain steps = step();
    while (isNext(TOKEN_ARROW)) {
        skip();
        Chain next = step();
        for (AssociationNode* end : steps.otherEnds) {
            end->setChild(next.first);
        }
        steps.end->setChild(next.first);
        steps.end = next.end;
        steps.otherEnds = std::move(next.otherEnds);
    }
    return steps;
}

// step: definition | reference | group
SyntaxParser::Chain SyntaxParser::step() {
    enterLevel();
    if (isNext(TOKEN_LEFT_PARENTHESIS)) {
        return group();
    }
    return isNext(TOKEN_AT) ? reference() : definition();
}

// group: "(" chain ( ";" chain )* ")"
SyntaxParser::Chain SyntaxParser::group() {
    Chain all;
    OrvPoolVector<AssociationPtr> alternatives;
    do {
        skip();
        Chain alternative = chainSteps();
        addEnds(all, alternative);
        alternatives.push_back(std::move(alternative.first));
    } while (isNext(TOKEN_SEMICOLON));
    if (!isNext(TOKEN_RIGHT_PARENTHESIS)) {
        fail("\"->\", \";\" or \")\"");
    }
    skip();
    all.first = joinAlternatives(alternatives);
    return all;
}

// Makes the alternatives siblings. Those that begin with a reference come last: passes that do not
// look below a reference then still reach every definition.
AssociationPtr SyntaxParser::joinAlternatives(const OrvPoolVector<AssociationPtr>& alternatives) {
    OrvPoolVector<AssociationPtr> siblings;
    for (const AssociationPtr& alternative : alternatives) {
        for (AssociationPtr step = alternative; step; step = step->getSibling()) {
            siblings.push_back(step);
        }
    }
    std::stable_partition(siblings.begin(), siblings.end(), [](const AssociationPtr& step) {
        return step->getAssociationKind() == AssociationKind::definition;
    });
    for (std::size_t i = 0; i < siblings.size(); ++i) {
        siblings[i]->setSibling(i + 1 < siblings.size() ? siblings[i + 1] : AssociationPtr());
    }
    return siblings.front();
}

SyntaxParser::Chain SyntaxParser::chainOf(AssociationPtr step) {
    AssociationNode* const end = step.get();
    return {std::move(step), end, {}};
}

void SyntaxParser::addEnds(Chain& chain, const Chain& alternative) {
    if (chain.end != nullptr) {
        chain.otherEnds.push_back(chain.end);
    }
    chain.end = alternative.end;
    chain.otherEnds.insert(chain.otherEnds.end(), alternative.otherEnds.begin(),
                           alternative.otherEnds.end());
}

// reference: "@" NAME
SyntaxParser::Chain SyntaxParser::reference() {
    const Position at = skip();
    const std::string_view name = identifier().text();
    return chainOf(makeNode<ReferenceAssociationNode>(at, kept(name)));
}

// definition: [ NAME ":" ] [ "^" ] [ "_" ] AssociationName [ "{" expression "}" ]
SyntaxParser::Chain SyntaxParser::definition() {
    const Position at = position();
    std::string_view label;
    if (isNext(TOKEN_VARIABLE_OR_FUNCTION)) {
        label = identifier().text();
        expect(TOKEN_COLON);
    }
    const bool addToResult = isNext(TOKEN_CARET);
    if (addToResult) {
        skip();
    }
    const bool depthFirst = isNext(TOKEN_UNDERSCORE);
    if (depthFirst) {
        skip();
    }
    if (!isNext(TOKEN_ASSOCIATION_NAME)) {
        fail("an association name in brackets");
    }
    const ColumnToken& name = take();
    const Position nameAt = positionOf(name);
    auto node = makeNode<DefinitionAssociationNode>(at, kept(name.text()));
    node->setNameSpan(spanFrom(nameAt.offset, nameAt));
    if (!label.empty()) {
        node->setLabel(kept(label));
    }
    node->setAddToResult(addToResult);
    node->setDepthFirstEvaluation(depthFirst);
    if (isNext(TOKEN_LEFT_BRACE)) {
        node->setCondition(bracedExpression());
        node->setSpan(spanFrom(at.offset, at));
    }
    return chainOf(std::move(node));
}
