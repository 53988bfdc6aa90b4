#include "namespace/Scope.h"

#include <algorithm>

#include "foundation/TextOutput.h"
#include "namespace/SymbolPrintVisitor.h"

namespace {

struct ByName {
    bool operator()(const Scope::Entry& entry, std::string_view name) const {
        return entry.name < name;
    }
    bool operator()(std::string_view name, const Scope::Entry& entry) const {
        return name < entry.name;
    }
};

}  // namespace

void Scope::insert(const std::string& name, const SymbolPtr& symbol) {
    const auto place = std::upper_bound(entries_.begin(), entries_.end(), name, ByName());
    entries_.insert(place, Entry{name, symbol});
}

Scope::Range Scope::find(std::string_view name) const {
    return std::equal_range(entries_.begin(), entries_.end(), name, ByName());
}

std::vector<SymbolPtr> Scope::lookup(std::string_view name) const {
    std::vector<SymbolPtr> symbols;
    const Range found = find(name);
    std::for_each(found.first, found.second,
                  [&symbols](const Entry& entry) { symbols.push_back(entry.symbol); });
    return symbols;
}

void ScopePrinter::print(const Scope& scope) {
    writeText(stream_, "Scope[\"");
    writeText(stream_, scope.getName());
    writeText(stream_, "\"]( ");
    SymbolPrintVisitor symbolPrinter(stream_);
    std::string_view separator = "{ ";
    for (const Scope::Entry& entry : scope.entries()) {
        writeText(stream_, separator);
        writeText(stream_, "\"");
        writeText(stream_, entry.name);
        writeText(stream_, "\" => ");
        entry.symbol->accept(symbolPrinter);
        separator = ", ";
    }
    writeText(stream_, scope.entries().empty() ? "none )" : " } )");
}
