#include "namespace/NameResolver.h"

namespace {

void appendAccepted(std::vector<SymbolPtr>& result, const Scope& scope, std::string_view name,
                    const OrvCountedPtr<SymbolFilter>& filter) {
    const Scope::Range found = scope.find(name);
    for (auto entry = found.first; entry != found.second; ++entry) {
        if (!filter || filter->accepts(entry->symbol)) {
            result.push_back(entry->symbol);
        }
    }
}

}  // namespace

std::vector<SymbolPtr> NameResolver::resolve(std::string_view name,
                                             const OrvCountedPtr<SymbolFilter>& filter) const {
    std::vector<SymbolPtr> result;
    for (const Scope* scope = scope_.get(); result.empty() && scope != nullptr;
         scope = scope->getParent().get()) {
        appendAccepted(result, *scope, name, filter);
    }
    return result;
}

std::vector<SymbolPtr> NameResolver::resolveLocal(std::string_view name,
                                                  const OrvCountedPtr<SymbolFilter>& filter) const {
    std::vector<SymbolPtr> result;
    appendAccepted(result, *scope_, name, filter);
    return result;
}

SymbolView NameResolver::find(const Scope& scope, std::string_view name, SymbolKind kind) {
    SymbolView found;
    for (const Scope* next = &scope; found.empty() && next != nullptr;
         next = next->getParent().get()) {
        if (next->hasAny(kind)) {
            found = SymbolView(next->find(name), kind);
        }
    }
    return found;
}
