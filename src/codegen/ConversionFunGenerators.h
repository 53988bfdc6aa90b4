// Generators of the conversions.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// "string", for all its overloads.
class StringConversionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "real", for all its overloads.
class RealConversionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "integer", for all its overloads.
class IntegerConversionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "boolean", for all its overloads.
class BooleanConversionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "first", "only" and "object": an object out of a collection.
class ObjectConversionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
