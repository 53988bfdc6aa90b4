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
    index_.reset();
    constexpr std::size_t usualEntries = 4;
    entries_.reserve(entries_.empty() ? usualEntries : 0);
    if (entries_.empty() || entries_.back().name <= name) {
        entries_.emplace_back(name, symbol);
        return;
    }
    const auto place = std::upper_bound(entries_.begin(), entries_.end(), name, ByName());
    entries_.emplace(place, name, symbol);
}

void Scope::buildIndex() {
    auto index = std::make_unique<Index>();
    const Entry* const end = entries_.data() + entries_.size();
    for (const Entry* entry = entries_.data(); entry != end;) {
        const Range range = std::equal_range(entry, end, entry->name, ByName());
        index->emplace(entry->name, range);
        entry = range.second;
    }
    index_ = std::move(index);
}

Scope::Range Scope::findAmong(std::string_view name) const {
    if (index_) {
        const auto found = index_->find(name);
        return found != index_->end() ? found->second : Range();
    }
    constexpr std::size_t fewEntries = 8;
    const Entry* const begin = entries_.data();
    const Entry* const end = begin + entries_.size();
    if (entries_.size() > fewEntries) {
        return std::equal_range(begin, end, name, ByName());
    }
    const auto isNamed = [name](const Entry& entry) { return entry.name == name; };
    const Entry* const first = std::find_if(begin, end, isNamed);
    return {first, std::find_if_not(first, end, isNamed)};
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
