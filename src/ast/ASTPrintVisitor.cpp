// Every operation writes one node: its header, then each field by a helper that knows the form of
// the field, then " )". Children accept the same visitor in place. Only binary expressions differ:
// the headers of a left-leaning chain are written from the top down, then its innermost operand,
// then the right operands from the bottom up.
#include "ast/ASTPrintVisitor.h"

#include <array>
#include <string>

#include "ast/LeftSpine.h"
#include "foundation/TextOutput.h"

namespace {

template <class Operator, std::size_t count>
std::string_view nameOf(const std::array<std::string_view, count>& names, Operator op) {
    const auto index = static_cast<std::size_t>(op);
    return index < count ? names[index] : "<<UNKNOWN>>";
}

std::string_view nameOf(BinaryOperator op) {
    static constexpr std::array<std::string_view, 7> names = {
        "IMPLIES", "AND", "OR", "ADD", "SUBTRACT", "MULTIPLY", "DIVIDE"};
    return nameOf(names, op);
}

std::string_view nameOf(UnaryOperator op) {
    static constexpr std::array<std::string_view, 2> names = {"MINUS", "NOT"};
    return nameOf(names, op);
}

std::string_view nameOf(RelationalOperator op) {
    static constexpr std::array<std::string_view, 8> names = {
        "EQUAL", "NOT_EQUAL",  "REGEXP_EQUAL", "REGEXP_NOT_EQUAL",
        "LESS",  "LESS_EQUAL", "GREATER",      "GREATER_EQUAL"};
    return nameOf(names, op);
}

}  // namespace

void ASTPrintVisitor::write(std::string_view text) { writeText(stream_, text); }

void ASTPrintVisitor::writeInteger(std::int32_t value) {
    std::string digits;
    appendInteger(digits, value);
    write(digits);
}

void ASTPrintVisitor::beginNode(std::string_view tag, const ASTNode& node) {
    checkVisitDepth(node);
    write(tag);
    write("@[");
    writeInteger(node.getLine());
    write(":");
    writeInteger(node.getColumn());
    write("](");
}

void ASTPrintVisitor::writeQuoted(std::string_view field, std::string_view text) {
    write(field);
    write("\"");
    write(text);
    write("\"");
}

void ASTPrintVisitor::writeFlag(std::string_view field, bool flag) {
    write(field);
    write(flag ? "true" : "false");
}

void ASTPrintVisitor::writeExpression(std::string_view field, const ExpressionPtr& expression) {
    write(field);
    if (expression) {
        expression->accept(*this);
    } else {
        write("<<null>>");
    }
}

void ASTPrintVisitor::writeOptional(std::string_view field, ASTNode* node) {
    write(field);
    if (node != nullptr) {
        node->accept(*this);
    } else {
        write("none");
    }
}

void ASTPrintVisitor::visitSpecification(SpecificationNode& node) {
    beginNode("Specification", node);
    writeExpression(" expr=", node.getExpr());
    write(" )");
}

void ASTPrintVisitor::writeQuantifier(std::string_view tag, const QuantifierNode& node) {
    beginNode(tag, node);
    writeQuoted(" name=", node.getName());
    writeExpression(", source=", node.getSource());
    writeExpression(", expr=", node.getExpr());
    write(" )");
}

void ASTPrintVisitor::visitUniversalQuantifier(UniversalQuantifierNode& node) {
    writeQuantifier("UniversalQuantifier", node);
}

void ASTPrintVisitor::visitExistentialQuantifier(ExistentialQuantifierNode& node) {
    writeQuantifier("ExistentialQuantifier", node);
}

void ASTPrintVisitor::beginOperation(const BinaryExpressionNode& node) {
    beginNode("BinaryExpression", node);
    write(" op=");
    write(nameOf(node.getOp()));
    write(", lhs=");
}

void ASTPrintVisitor::visitBinaryExpression(BinaryExpressionNode& node) {
    const LeftSpine spine(node);
    beginOperation(node);
    for (const BinaryExpressionNode* binary = &node; binary != &spine.innermost();) {
        binary = static_cast<const BinaryExpressionNode*>(binary->getLhs().get());
        beginOperation(*binary);
    }
    writeExpression("", spine.innermostOperand());
    for (const BinaryExpressionNode& binary : spine) {
        writeExpression(", rhs=", binary.getRhs());
        write(" )");
    }
}

void ASTPrintVisitor::visitUnaryExpression(UnaryExpressionNode& node) {
    beginNode("UnaryExpression", node);
    write(" op=");
    write(nameOf(node.getOp()));
    writeExpression(", expr=", node.getExpr());
    write(" )");
}

void ASTPrintVisitor::visitRelationalExpression(RelationalExpressionNode& node) {
    beginNode("RelationalExpression", node);
    write(" op=");
    write(nameOf(node.getOp()));
    writeExpression(", lhs=", node.getLhs());
    writeExpression(", rhs=", node.getRhs());
    write(" )");
}

void ASTPrintVisitor::visitApplicationExpression(ApplicationExpressionNode& node) {
    beginNode("ApplicationExpression", node);
    writeQuoted(" name=", node.getName());
    writeExpression(", expr=", node.getExpr());
    write(" )");
}

void ASTPrintVisitor::visitMapExpression(MapExpressionNode& node) {
    beginNode("MapExpression", node);
    writeExpression(" function=", node.getFunction());
    writeExpression(", source=", node.getSource());
    write(" )");
}

void ASTPrintVisitor::visitFilterExpression(FilterExpressionNode& node) {
    beginNode("FilterExpression", node);
    writeExpression(" predicate=", node.getPredicate());
    writeExpression(", source=", node.getSource());
    write(" )");
}

void ASTPrintVisitor::visitTraverseExpression(TraverseExpressionNode& node) {
    beginNode("TraverseExpression", node);
    writeExpression(" path=", node.getPath());
    writeExpression(", source=", node.getSource());
    write(" )");
}

void ASTPrintVisitor::visitSortExpression(SortExpressionNode& node) {
    beginNode("SortExpression", node);
    write(" keys={ ");
    std::string_view separator;
    for (const SortKey& key : node.getKeys()) {
        write(separator);
        writeExpression("SortKey( expr=", key.getExpr());
        writeFlag(", isAscending=", key.isAscending());
        write(" )");
        separator = ", ";
    }
    writeExpression(" }, source=", node.getSource());
    write(" )");
}

void ASTPrintVisitor::visitLetExpression(LetExpressionNode& node) {
    beginNode("LetExpression", node);
    writeQuoted(" name=", node.getName());
    writeExpression(", source=", node.getSource());
    writeExpression(", expr=", node.getExpr());
    write(" )");
}

void ASTPrintVisitor::visitIfExpression(IfExpressionNode& node) {
    beginNode("IfExpression", node);
    writeExpression(" test=", node.getTest());
    writeExpression(", then=", node.getThen());
    writeExpression(", else=", node.getElse());
    write(" )");
}

void ASTPrintVisitor::visitTupleExpression(TupleExpressionNode& node) {
    beginNode("TupleExpression", node);
    if (node.getElements().empty()) {
        write(" none");
    } else {
        std::string_view separator = " { ";
        for (const ExpressionPtr& element : node.getElements()) {
            writeExpression(separator, element);
            separator = ", ";
        }
        write(" }");
    }
    write(" )");
}

void ASTPrintVisitor::visitUnitExpression(UnitExpressionNode& node) {
    beginNode("UnitExpression", node);
    write(" )");
}

void ASTPrintVisitor::visitRegExpConstant(RegExpConstantNode& node) {
    beginNode("RegExpConstant", node);
    writeQuoted(" ", node.getText());
    write(" )");
}

void ASTPrintVisitor::visitStringConstant(StringConstantNode& node) {
    beginNode("StringConstant", node);
    writeQuoted(" ", node.getText());
    write(" )");
}

void ASTPrintVisitor::visitIntegerConstant(IntegerConstantNode& node) {
    beginNode("IntegerConstant", node);
    write(" ");
    writeInteger(node.getValue());
    write(" )");
}

void ASTPrintVisitor::visitRealConstant(RealConstantNode& node) {
    beginNode("RealConstant", node);
    std::string digits = " ";
    appendRoundedReal(digits, node.getValue());
    write(digits);
    write(" )");
}

void ASTPrintVisitor::visitBooleanConstant(BooleanConstantNode& node) {
    beginNode("BooleanConstant", node);
    write(node.getValue() ? " 1 )" : " 0 )");
}

void ASTPrintVisitor::visitPath(PathNode& node) {
    beginNode("Path", node);
    write(" anchor=");
    write(node.getAnchor());
    writeOptional(", association=", node.getAssociation().get());
    write(" )");
}

void ASTPrintVisitor::visitReferenceAssociation(ReferenceAssociationNode& node) {
    beginNode("ReferenceAssociation", node);
    writeQuoted(" name=", node.getName());
    writeOptional(", child=", node.getChild().get());
    writeOptional(", sibling=", node.getSibling().get());
    write(" )");
}

void ASTPrintVisitor::visitDefinitionAssociation(DefinitionAssociationNode& node) {
    beginNode("DefinitionAssociation", node);
    writeQuoted(" name=", node.getName());
    writeQuoted(", label=", node.getLabel());
    writeFlag(", addToResult=", node.getAddToResult());
    writeOptional(", condition=", node.getCondition().get());
    writeOptional(", child=", node.getChild().get());
    writeOptional(", sibling=", node.getSibling().get());
    write(" )");
}
