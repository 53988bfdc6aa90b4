// The tree's nodes: printed forms, predefined anchors, very deep trees.
#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "parser/ParseOutcome.h"

namespace {

using NodePtr = OrvCountedPtr<ASTNode>;

template <class Node, class... Fields>
OrvCountedPtr<Node> make(Fields&&... fields) {
    return OrvCountedPtr<Node>(new Node(std::forward<Fields>(fields)...));
}

template <class Node>
OrvCountedPtr<Node> at(int line, int column, const OrvCountedPtr<Node>& node) {
    node->setPosition(line, column);
    return node;
}

AssociationPtr reference(const AssociationPtr& child, const AssociationPtr& sibling) {
    const auto node = make<ReferenceAssociationNode>("r");
    node->setChild(child);
    node->setSibling(sibling);
    return node;
}

AssociationPtr definition(const ExpressionPtr& condition, const AssociationPtr& child) {
    const auto node = at(5, 6, make<DefinitionAssociationNode>("a"));
    node->setLabel("l");
    node->setAddToResult(true);
    node->setDepthFirstEvaluation(true);
    node->setCondition(condition);
    node->setChild(child);
    node->setSibling(make<DefinitionAssociationNode>("b"));
    return node;
}

NodePtr tuple(const std::vector<ExpressionPtr>& elements) {
    const auto node = make<TupleExpressionNode>();
    for (const ExpressionPtr& element : elements) {
        node->addElement(element);
    }
    return node;
}

// In expected texts "@(" stands for a node without a position, and "%1", "%2", "%r" for the
// printed forms of two constants and a reference.
TEST(PrintVisitor, Nodes) {
    const ExpressionPtr none;
    const ExpressionPtr one = at(1, 2, make<IntegerConstantNode>(1));
    const ExpressionPtr two = make<IntegerConstantNode>(-2147483647 - 1);
    const AssociationPtr step = reference({}, {});
    const SortKeys keys = {SortKey(one), SortKey(none, false)};
    const ExpressionPtr conjunction =
        at(2, 5, make<BinaryExpressionNode>(BinaryOperator::AND, one, none));
    const std::vector<std::pair<NodePtr, std::string>> cases = {
        {make<SpecificationNode>(none), "Specification@( expr=<<null>> )"},
        {at(3, 4, make<SpecificationNode>(one)), "Specification@[3:4]( expr=%1 )"},
        {make<UniversalQuantifierNode>("x", one, two),
         R"(UniversalQuantifier@( name="x", source=%1, expr=%2 ))"},
        {make<ExistentialQuantifierNode>("x", one, two),
         R"(ExistentialQuantifier@( name="x", source=%1, expr=%2 ))"},
        {make<BinaryExpressionNode>(BinaryOperator::ADD, none, none),
         "BinaryExpression@( op=ADD, lhs=<<null>>, rhs=<<null>> )"},
        {make<BinaryExpressionNode>(BinaryOperator::OR, conjunction, two),
         "BinaryExpression@( op=OR, lhs=BinaryExpression@[2:5]( op=AND, lhs=%1, rhs=<<null>> ), "
         "rhs=%2 )"},
        {make<BinaryExpressionNode>(BinaryOperator::IMPLIES, conjunction, one),
         "BinaryExpression@( op=IMPLIES, lhs=BinaryExpression@[2:5]( op=AND, lhs=%1, rhs=<<null>> "
         "), rhs=%1 )"},
        {make<UnaryExpressionNode>(UnaryOperator::NOT, none),
         "UnaryExpression@( op=NOT, expr=<<null>> )"},
        {make<RelationalExpressionNode>(RelationalOperator::LESS, one, none),
         "RelationalExpression@( op=LESS, lhs=%1, rhs=<<null>> )"},
        {make<BinaryExpressionNode>(static_cast<BinaryOperator>(7), one, two),
         "BinaryExpression@( op=<<UNKNOWN>>, lhs=%1, rhs=%2 )"},
        {make<UnaryExpressionNode>(static_cast<UnaryOperator>(2), one),
         "UnaryExpression@( op=<<UNKNOWN>>, expr=%1 )"},
        {make<RelationalExpressionNode>(static_cast<RelationalOperator>(8), one, two),
         "RelationalExpression@( op=<<UNKNOWN>>, lhs=%1, rhs=%2 )"},
        {make<ApplicationExpressionNode>("f", one),
         R"(ApplicationExpression@( name="f", expr=%1 ))"},
        {make<MapExpressionNode>(one, none), "MapExpression@( function=%1, source=<<null>> )"},
        {make<FilterExpressionNode>(none, two),
         "FilterExpression@( predicate=<<null>>, source=%2 )"},
        {make<TraverseExpressionNode>(one, two), "TraverseExpression@( path=%1, source=%2 )"},
        {make<SortExpressionNode>(), "SortExpression@( keys={  }, source=<<null>> )"},
        {make<SortExpressionNode>(keys, two),
         "SortExpression@( keys={ SortKey( expr=%1, isAscending=true ), "
         "SortKey( expr=<<null>>, isAscending=false ) }, source=%2 )"},
        {make<LetExpressionNode>("x", one, two),
         R"(LetExpression@( name="x", source=%1, expr=%2 ))"},
        {make<IfExpressionNode>(one, none, two),
         "IfExpression@( test=%1, then=<<null>>, else=%2 )"},
        {make<TupleExpressionNode>(), "TupleExpression@( none )"},
        {tuple({one}), "TupleExpression@( { %1 } )"},
        {tuple({none, one}), "TupleExpression@( { <<null>>, %1 } )"},
        {make<TupleExpressionNode>(two, one), "TupleExpression@( { %2, %1 } )"},
        {tuple({one, none, two}), "TupleExpression@( { %1, <<null>>, %2 } )"},
        {tuple({one, one, two, none, two}), "TupleExpression@( { %1, %1, %2, <<null>>, %2 } )"},
        {at(1, 9, make<UnitExpressionNode>()), "UnitExpression@[1:9]( )"},
        {make<RegExpConstantNode>("a\"\\d"), R"(RegExpConstant@( "a"\d" ))"},
        {make<StringConstantNode>("a\"\n\\"), "StringConstant@( \"a\"\n\\\" )"},
        {two, "IntegerConstant@( -2147483648 )"},
        {make<RealConstantNode>(0.1), "RealConstant@( 0.1 )"},
        {make<RealConstantNode>(100000.0), "RealConstant@( 100000 )"},
        {make<RealConstantNode>(-1234567.0), "RealConstant@( -1.23457e+06 )"},
        {make<RealConstantNode>(0.00001), "RealConstant@( 1e-05 )"},
        {make<RealConstantNode>(2.0 / 3), "RealConstant@( 0.666667 )"},
        {make<RealConstantNode>(HUGE_VAL), "RealConstant@( inf )"},
        {make<BooleanConstantNode>(true), "BooleanConstant@( 1 )"},
        {make<BooleanConstantNode>(false), "BooleanConstant@( 0 )"},
        {make<PathNode>("x", step), "Path@( anchor=x, association=%r )"},
        {make<PathNode>(AnchorKind::THIS), "Path@( anchor=this, association=none )"},
        {make<PathNode>(AnchorKind::CURRENT), "Path@( anchor=current, association=none )"},
        {make<PathNode>(AnchorKind::MODEL), "Path@( anchor=model, association=none )"},
        {make<PathNode>(static_cast<AnchorKind>(3)), "Path@( anchor=this, association=none )"},
        {reference(step, step), R"(ReferenceAssociation@( name="r", child=%r, sibling=%r ))"},
        {definition(one, step),
         R"(DefinitionAssociation@[5:6]( name="a", label="l", addToResult=true, condition=%1, )"
         R"(child=%r, sibling=DefinitionAssociation@( name="b", label="", addToResult=false, )"
         R"(condition=none, child=none, sibling=none ) ))"},
    };
    for (const auto& [node, text] : cases) {
        std::string expected = replaced(text, "%1", "IntegerConstant@[1:2]( 1 )");
        expected = replaced(expected, "%2", "IntegerConstant@( -2147483648 )");
        expected = replaced(expected, "%r",
                            R"(ReferenceAssociation@( name="r", child=none, sibling=none ))");
        EXPECT_EQ(printed(*node), replaced(expected, "@(", "@[-1:-1]("));
    }
}

// The way in which numbers are written in some countries.
struct Grouping : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
    std::string do_truename() const override { return "yes"; }
};

TEST(PrintVisitor, NeitherObeysNorChangesTheStream) {
    const NodePtr tree = tuple({at(1234567, 4321, make<IntegerConstantNode>(7654321)),
                                make<RealConstantNode>(12345.5), make<BooleanConstantNode>(true),
                                make<StringConstantNode>("s")});
    const std::locale locale(std::locale::classic(), new Grouping);
    std::ostringstream stream;
    stream.imbue(locale);
    stream << std::hex << std::showbase << std::showpos << std::uppercase << std::scientific
           << std::boolalpha << std::showpoint << std::left << std::setprecision(2)
           << std::setfill('*') << std::setw(30);
    const std::ios::fmtflags flags = stream.flags();
    ASTPrintVisitor printer(stream);
    tree->accept(printer);
    EXPECT_EQ(stream.str(),
              "TupleExpression@[-1:-1]( { IntegerConstant@[1234567:4321]( 7654321 ), "
              "RealConstant@[-1:-1]( 12345.5 ), BooleanConstant@[-1:-1]( 1 ), "
              "StringConstant@[-1:-1]( \"s\" ) } )");
    EXPECT_TRUE(stream.flags() == flags && stream.width() == 30 && stream.precision() == 2 &&
                stream.fill() == '*' && stream.getloc() == locale);
}

TEST(PathNode, KnowsPredefinedAnchorsByName) {
    const std::vector<std::string> names = {"this", "current", "model"};
    for (const char* const name : {"this", "current", "model", "x"}) {
        for (std::uint32_t kind = 0; kind < 3; ++kind) {
            EXPECT_EQ(PathNode(name).isAnchor(AnchorKind(kind)), name == names[kind]) << name;
        }
    }
}

// Trees that no parser lets through end as well as any other.
TEST(Tree, DepthIsNoDanger) {
    ExpressionPtr left;
    ExpressionPtr right;
    ExpressionPtr inner;
    AssociationPtr steps;
    for (int i = 0; i < 300000; ++i) {
        left = make<BinaryExpressionNode>(BinaryOperator::ADD, left, ExpressionPtr());
        right = make<BinaryExpressionNode>(BinaryOperator::IMPLIES, ExpressionPtr(), right);
        inner = make<UnaryExpressionNode>(UnaryOperator::NOT, inner);
        steps = i % 2 == 0 ? reference(steps, {}) : reference({}, steps);
    }
    EXPECT_GT(printed(*left).size(), 300000U * 50);
    for (const NodePtr& tree : std::vector<NodePtr>{right, inner, steps}) {
        try {
            printed(*tree);
            ADD_FAILURE() << "no exception";
        } catch (const ParseException& exception) {
            EXPECT_STREQ(exception.what(), "Expression is nested too deeply.");
        }
    }
}

}  // namespace
