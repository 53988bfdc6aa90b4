// Scopes: regions of declarations, chained to their parents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/OrvCountedPtr.h"
#include "foundation/SameName.h"
#include "foundation/SmallArray.h"
#include "namespace/Symbol.h"

/// One region of declarations: a multimap from names to symbols.
///
/// Names are ordered by their bytes, entries of one name by their insertion. A symbol may stand
/// under several names, and several symbols under one. Nothing is ever removed. Shared by the name
/// space of a compilation and by the scopes below; the top-level scope is pinned.
class Scope : public OrvCountedObject {
public:
    struct Entry {
        std::string_view name;
        SymbolPtr symbol;
    };
    /// The entries of one name: a part of the scope, valid until the next insertion.
    using Range = std::pair<const Entry*, const Entry*>;
    /// Most scopes declare a variable under one name or two, the outermost one of an expression
    /// its variable under three.
    using Entries = SmallArray<Entry, 3>;

    /// `name` is a constant. Where there is a region, the scope stands in it, with its entries.
    explicit Scope(std::string_view name, OrvCountedPtr<Scope> parent = {},
                   OrvMemoryRegion* region = nullptr)
        : name_(name), parent_(std::move(parent)), entries_(region) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    std::string_view getName() const { return name_; }
    /// Empty in the outermost scope.
    const OrvCountedPtr<Scope>& getParent() const { return parent_; }
    void setParent(const OrvCountedPtr<Scope>& parent) { parent_ = parent; }

    /// Adds an entry behind those of the same name; never rejects or replaces one. The scope does
    /// not copy `name`, which is a constant or the symbol's own.
    void insert(std::string_view name, const SymbolPtr& symbol);
    /// To be called for a large scope when it is complete: from then on, until something is
    /// inserted, a look-up takes the same time whatever the number of entries.
    void buildIndex();

    /// The symbols of exactly this name in this scope alone, in insertion order.
    std::vector<SymbolPtr> lookup(std::string_view name) const;
    Range find(std::string_view name) const {
        return entries_.size() > fewEntries ? findAmongMany(name) : findAmongFew(name);
    }

    /// Whether a symbol of that kind was inserted.
    bool hasAny(SymbolKind kind) const { return (kinds_ & bitOf(kind)) != 0; }
    /// All entries, in order.
    const Entries& entries() const { return entries_; }

private:
    static constexpr std::size_t fewEntries = 8;

    Range findAmongFew(std::string_view name) const {
        const Entry* first = entries_.begin();
        while (first != entries_.end() && !isSameName(first->name, name)) {
            ++first;
        }
        const Entry* behind = first != entries_.end() ? first + 1 : first;
        while (behind != entries_.end() && isSameName(behind->name, name)) {
            ++behind;
        }
        return {first, behind};
    }
    Range findAmongMany(std::string_view name) const;
    [[gnu::noinline]] void moveLastToItsPlace();

    static std::uint32_t bitOf(SymbolKind kind) { return 1U << static_cast<std::uint32_t>(kind); }

    std::string_view name_;
    OrvCountedPtr<Scope> parent_;
    Entries entries_;
    std::uint32_t kinds_ = 0;
    std::vector<Range> index_;  // by the hashes of the names, with empty places; may be missing
};

using ScopePtr = OrvCountedPtr<Scope>;

/// Writes a scope to a stream, without a line end: `Scope["Map"]( { "current" => ... } )`.
class ScopePrinter {
public:
    explicit ScopePrinter(std::ostream& stream) : stream_(stream) {}
    void print(const Scope& scope);

private:
    std::ostream& stream_;
};
