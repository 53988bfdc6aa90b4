// The record of the variables that an expression uses.
#pragma once

#include <unordered_map>

class VariableSymbol;

/// Which variable symbols occur as the anchor of a path, by identity.
///
/// Filled by the type checker, read by code generation, which leaves a let away whose variable is
/// not used. Borrows the symbols; lives for one compilation.
class LetVariableUsage {
public:
    /// Makes the variable of a let known; that alone is no use of it.
    void registerLetVariable(const VariableSymbol& symbol) { isUsed_.emplace(&symbol, false); }
    void recordUse(const VariableSymbol& symbol) { isUsed_[&symbol] = true; }

    bool isUsed(const VariableSymbol& symbol) const {
        const auto found = isUsed_.find(&symbol);
        return found != isUsed_.end() && found->second;
    }

private:
    std::unordered_map<const VariableSymbol*, bool> isUsed_;
};
