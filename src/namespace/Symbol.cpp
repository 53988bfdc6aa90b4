#include "namespace/Symbol.h"

Symbol::~Symbol() = default;
SymbolVisitor::~SymbolVisitor() = default;

void FunctionSymbol::accept(SymbolVisitor& visitor) { visitor.visitFunctionSymbol(*this); }
void VariableSymbol::accept(SymbolVisitor& visitor) { visitor.visitVariableSymbol(*this); }
void LabelSymbol::accept(SymbolVisitor& visitor) { visitor.visitLabelSymbol(*this); }

TypeStructures FunctionSymbol::parametersOf(const TypeExpression& type) {
    const TypePtr& domain = static_cast<const TEFunction&>(type).getDomain();
    TypeStructures parameters;
    if (!TEProduct::classof(*domain)) {
        parameters.add(*domain);
        return parameters;
    }
    for (const TypePtr& component : static_cast<const TEProduct&>(*domain).components()) {
        parameters.add(*component);
    }
    return parameters;
}

std::size_t FunctionSymbol::getArity() const {
    const TypePtr& domain = static_cast<const TEFunction&>(*getType()).getDomain();
    switch (domain->getTypeKind()) {
        case TypeKind::baseType:
            return TypeExpression::isUnit(domain) ? 0 : 1;
        case TypeKind::collection:
        case TypeKind::function:
            return 1;
        case TypeKind::product:
            return static_cast<const TEProduct&>(*domain).size();
        case TypeKind::typeError:
            break;
    }
    return 0;
}
