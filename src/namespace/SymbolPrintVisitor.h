// The printed form of symbols.
#pragma once

#include <iosfwd>

#include "namespace/Symbol.h"

/// Writes a symbol to a stream, without a line end: `VariableSymbol( name="x", type=object )`.
class SymbolPrintVisitor : public SymbolVisitor {
public:
    explicit SymbolPrintVisitor(std::ostream& stream) : stream_(stream) {}

    void visitFunctionSymbol(FunctionSymbol& symbol) override;
    void visitVariableSymbol(VariableSymbol& symbol) override;
    void visitLabelSymbol(LabelSymbol& symbol) override;

private:
    void write(const char* className, const Symbol& symbol);

    std::ostream& stream_;
};
