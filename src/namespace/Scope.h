// Scopes: regions of declarations, chained to their parents.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "namespace/Symbol.h"

/// One region of declarations: a multimap from names to symbols.
///
/// Names are ordered by their bytes, entries of one name by their insertion. A symbol may stand
/// under several names, and several symbols under one. Nothing is ever removed. Shared by the name
/// space of a compilation and by the scopes below; the top-level scope is pinned.
class Scope : public OrvCountedObject {
public:
    struct Entry {
        Entry(const std::string& entered, const SymbolPtr& meant) : name(entered), symbol(meant) {}

        std::string name;
        SymbolPtr symbol;
    };
    /// The entries of one name: a part of the scope, valid until the next insertion.
    using Range = std::pair<const Entry*, const Entry*>;

    /// `name` is a constant.
    explicit Scope(std::string_view name) : name_(name) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    std::string_view getName() const { return name_; }
    /// Empty in the outermost scope.
    const OrvCountedPtr<Scope>& getParent() const { return parent_; }
    void setParent(const OrvCountedPtr<Scope>& parent) { parent_ = parent; }

    /// Adds an entry behind those of the same name; never rejects or replaces one.
    void insert(const std::string& name, const SymbolPtr& symbol);
    /// To be called for a large scope when it is complete: from then on, until something is
    /// inserted, a look-up takes the same time whatever the number of entries.
    void buildIndex();

    /// The symbols of exactly this name in this scope alone, in insertion order.
    std::vector<SymbolPtr> lookup(std::string_view name) const;
    Range find(std::string_view name) const { return entries_.empty() ? Range() : findAmong(name); }

    /// All entries, in order.
    const OrvPoolVector<Entry>& entries() const { return entries_; }

private:
    using Index = std::unordered_map<std::string_view, Range>;

    Range findAmong(std::string_view name) const;

    std::string_view name_;
    OrvCountedPtr<Scope> parent_;
    OrvPoolVector<Entry> entries_;
    std::unique_ptr<Index> index_;
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
