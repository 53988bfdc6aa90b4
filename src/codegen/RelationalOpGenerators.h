// Generators of the relational operators.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// Comparisons of strings, numbers and booleans.
class ArithmeticRelationalOpGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// Identity of objects.
class ObjectRelationalOpGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// Comparisons of collections of objects as sets. "Greater" is "less" with the operands exchanged.
class SetRelationalOpGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// Matches of a text with a pattern: the right operand is the pattern, and stands first in the
/// target.
class RegExpRelationalOpGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
