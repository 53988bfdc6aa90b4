#include "names/VisibleSymbols.h"

namespace mmq {

std::vector<Scope::Entry> visibleSymbols(const NameSpace& nameSpace, const ASTNode& node,
                                         SymbolKind kind) {
    std::vector<Scope::Entry> result;
    if (!nameSpace.hasScope(node)) {
        return result;
    }
    for (ScopePtr scope = nameSpace.scopeOf(node); scope; scope = scope->getParent()) {
        for (const Scope::Entry& entry : scope->entries()) {
            if (entry.symbol->getKind() == kind && entry.name.rfind("operator", 0) != 0) {
                result.push_back(entry);
            }
        }
    }
    return result;
}

}  // namespace mmq
