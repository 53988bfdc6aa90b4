// The catalogue of the built-in functions and operators.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "ast/ExpressionNode.h"
#include "namespace/NameResolver.h"
#include "namespace/Scope.h"

/// Holds the scope "TopLevel", which every expression sees first: 71 function symbols under 36
/// names, each with its signature and with the generator that builds its calls.
///
/// There is one environment a process: made on first use, pinned, read by any number of threads.
class TopLevelEnvironment {
public:
    TopLevelEnvironment();
    TopLevelEnvironment(const TopLevelEnvironment&) = delete;
    TopLevelEnvironment& operator=(const TopLevelEnvironment&) = delete;

    /// The environment of the process. Throws std::bad_alloc where it cannot be made; the next call
    /// tries again.
    static const OrvCountedPtr<TopLevelEnvironment>& instance();

    const ScopePtr& getScope() const { return scope_; }

    /// The functions of a name, or the overloads of an operator, in the order of their declaration.
    SymbolView functions(std::string_view name) const {
        return {scope_.get()->find(name), SymbolKind::function};
    }
    const SymbolView& functions(RelationalOperator op) const {
        return operators_[static_cast<std::size_t>(op)];
    }
    /// The name under which the overloads of an operator are declared.
    static const char* operatorName(RelationalOperator op) {
        return operatorNames[static_cast<std::size_t>(op)];
    }

private:
    static constexpr std::array<const char*, 8> operatorNames = {
        "operator=", "operator<>", "operator~=", "operator~<>",
        "operator<", "operator<=", "operator>",  "operator>="};

    ScopePtr scope_;
    std::array<SymbolView, operatorNames.size()> operators_;
};
