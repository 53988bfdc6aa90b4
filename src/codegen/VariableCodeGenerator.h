// The generators that variable symbols hold.
#pragma once

#include <string>

#include "codegen/Target.h"
#include "types/TypeExpression.h"

/// Makes the target object that stands for a variable. Held by a VariableSymbol; without state.
class VariableCodeGenerator {
public:
    VariableCodeGenerator() = default;
    VariableCodeGenerator(const VariableCodeGenerator&) = delete;
    VariableCodeGenerator& operator=(const VariableCodeGenerator&) = delete;
    virtual ~VariableCodeGenerator();

    /// A new target for a variable of this type and name.
    virtual TargetPtr generate(const TypePtr& type, std::string_view name) const = 0;
};

/// For variables that stand for one object: of quantifiers and iterations, and "this".
class ObjectVarGenerator : public VariableCodeGenerator {
public:
    TargetPtr generate(const TypePtr& type, std::string_view name) const override;
};

/// For let-bound variables: the binding of the variable's type, which is read like the variable and
/// caches its value. Throws OrvAssertion for a type that no let can bind.
class LetVarGenerator : public VariableCodeGenerator {
public:
    TargetPtr generate(const TypePtr& type, std::string_view name) const override;
};
