// The record of the variables that an expression uses.
#pragma once

#include <optional>
#include <unordered_set>

class VariableSymbol;

/// Which variable symbols occur as the anchor of a path, by identity.
///
/// Filled by the type checker, read by code generation, which leaves a let away whose variable is
/// not used. Borrows the symbols; lives for one compilation.
class LetVariableUsage {
public:
    void recordUse(const VariableSymbol& symbol) {
        if (&symbol != last_) {
            recordLast();
            last_ = &symbol;
        }
    }

    bool isUsed(const VariableSymbol& symbol) const {
        return &symbol == last_ || (used_ && used_->count(&symbol) > 0);
    }

private:
    void recordLast() {
        if (last_ == nullptr) {
            return;
        }
        if (!used_) {
            used_.emplace();
        }
        used_->insert(last_);
    }

    // The variable that was used last is the likeliest to be used next, and often the only one: it
    // enters the others when another one is used.
    const VariableSymbol* last_ = nullptr;
    std::optional<std::unordered_set<const VariableSymbol*>> used_;
};
