#include "namespace/SymbolPrintVisitor.h"

#include "foundation/TextOutput.h"
#include "types/TypeExprPrintVisitor.h"

void SymbolPrintVisitor::write(const char* className, const Symbol& symbol) {
    writeText(stream_, className);
    writeText(stream_, "( name=\"");
    writeText(stream_, symbol.getName());
    writeText(stream_, "\", type=");
    TypeExprPrintVisitor typePrinter(stream_);
    symbol.getType()->accept(typePrinter);
    writeText(stream_, " )");
}

void SymbolPrintVisitor::visitFunctionSymbol(FunctionSymbol& symbol) {
    write("FunctionSymbol", symbol);
}
void SymbolPrintVisitor::visitVariableSymbol(VariableSymbol& symbol) {
    write("VariableSymbol", symbol);
}
void SymbolPrintVisitor::visitLabelSymbol(LabelSymbol& symbol) { write("LabelSymbol", symbol); }
