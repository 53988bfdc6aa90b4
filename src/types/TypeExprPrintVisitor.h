// The printed form of types, as messages show it.
#pragma once

#include <iosfwd>
#include <string>

#include "types/TypeExpression.h"

/// Writes one type to a stream, without a line end: "integer", "( object ) collection",
/// "( string * real )", "( integer -> boolean )", "TypeError". A missing component is written
/// "<<null>>", a base type of no known kind "unknown".
class TypeExprPrintVisitor : public TypeExpressionVisitor {
public:
    explicit TypeExprPrintVisitor(std::ostream& stream) : stream_(stream) {}

    void visitTypeError(const TETypeError& type) override;
    void visitBaseType(const TEBaseType& type) override;
    void visitCollection(const TECollection& type) override;
    void visitProduct(const TEProduct& type) override;
    void visitFunction(const TEFunction& type) override;

private:
    void print(const TypePtr& type);

    std::ostream& stream_;
};

/// The printed form of a type as a text.
std::string printedType(const TypePtr& type);
