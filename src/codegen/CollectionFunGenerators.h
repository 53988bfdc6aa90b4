// Generators of the built-in functions on collections of objects.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// "size".
class SizeFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "unique": without duplicates.
class UniqueFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "unique_stable": without duplicates, in order.
class UniqueStableFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "reverse".
class ReverseFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
