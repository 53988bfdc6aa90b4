#include "namespace/Scope.h"

#include <algorithm>
#include <bit>

#include "foundation/SameName.h"
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

// Whether a name comes behind another one, or is the same; the first letters mostly tell.
bool isInOrder(std::string_view first, std::string_view second) {
    if (first.empty() || second.empty() || first.front() == second.front()) {
        return first <= second;
    }
    return static_cast<unsigned char>(first.front()) < static_cast<unsigned char>(second.front());
}

// The length and the letters at both ends tell the names of the built-in functions apart.
std::size_t hashOf(std::string_view name) {
    const auto letter = [name](std::size_t i) -> std::size_t {
        return static_cast<unsigned char>(name[i]);
    };
    return name.empty() ? 0 : name.size() + letter(0) * 7 + letter(name.size() - 1) * 11;
}

// The place of a name in a table whose size is a power of two, or an empty place for it.
template <class Table>
auto& placeOf(Table& index, std::string_view name) {
    const std::size_t mask = index.size() - 1;
    std::size_t place = hashOf(name) & mask;
    while (index[place].first != nullptr && !isSameName(index[place].first->name, name)) {
        place = (place + 1) & mask;
    }
    return index[place];
}

}  // namespace

void Scope::insert(std::string_view name, const SymbolPtr& symbol) {
    index_.clear();
    const bool isLast = entries_.empty() || isInOrder(entries_.back().name, name);
    entries_.append(name, symbol);
    kinds_ |= bitOf(symbol->getKind());
    if (!isLast) {
        moveLastToItsPlace();
    }
}

void Scope::moveLastToItsPlace() {
    Entry* const last = entries_.end() - 1;
    std::rotate(std::upper_bound(entries_.begin(), last, last->name, ByName()), last,
                entries_.end());
}

void Scope::buildIndex() {
    std::vector<Range> index(std::bit_ceil(2 * entries_.size() + 1));
    for (const Entry* entry = entries().begin(); entry != entries().end();) {
        const Range range = std::equal_range(entry, entries().end(), entry->name, ByName());
        placeOf(index, entry->name) = range;
        entry = range.second;
    }
    index_ = std::move(index);
}

Scope::Range Scope::findAmongMany(std::string_view name) const {
    return index_.empty() ? std::equal_range(entries_.begin(), entries_.end(), name, ByName())
                          : placeOf(index_, name);
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
