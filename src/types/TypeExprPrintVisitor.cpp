#include "types/TypeExprPrintVisitor.h"

#include <array>

#include "foundation/TextOutput.h"
#include "foundation/TextStream.h"

void TypeExprPrintVisitor::print(const TypePtr& type) {
    if (type) {
        type->accept(*this);
    } else {
        writeText(stream_, "<<null>>");
    }
}

void TypeExprPrintVisitor::visitTypeError(const TETypeError& /*type*/) {
    writeText(stream_, "TypeError");
}

void TypeExprPrintVisitor::visitBaseType(const TEBaseType& type) {
    static constexpr std::array<const char*, 7> names = {"regexp",  "string", "integer", "real",
                                                         "boolean", "object", "unit"};
    const auto kind = static_cast<std::size_t>(type.getBaseKind());
    writeText(stream_, (kind < names.size() ? names[kind] : "unknown"));
}

void TypeExprPrintVisitor::visitCollection(const TECollection& type) {
    writeText(stream_, "( ");
    print(type.getElementType());
    writeText(stream_, " ) collection");
}

void TypeExprPrintVisitor::visitProduct(const TEProduct& type) {
    writeText(stream_, "( ");
    for (std::size_t i = 0; i < type.size(); ++i) {
        writeText(stream_, (i == 0 ? "" : " * "));
        print(type.component(i));
    }
    writeText(stream_, " )");
}

void TypeExprPrintVisitor::visitFunction(const TEFunction& type) {
    writeText(stream_, "( ");
    print(type.getDomain());
    writeText(stream_, " -> ");
    print(type.getRange());
    writeText(stream_, " )");
}

std::string printedType(const TypePtr& type) {
    TextStream stream;
    TypeExprPrintVisitor printer(stream);
    type->accept(printer);
    return stream.str();
}
