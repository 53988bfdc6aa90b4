// The catalogue of the built-in functions and operators.
#pragma once

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

private:
    ScopePtr scope_;
};
