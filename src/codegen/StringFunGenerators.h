// Generators of the built-in functions on texts.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// "comma": strings joined by commas.
class CommaFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "delim": strings joined by a delimiter.
class DelimFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "concat": strings joined.
class ConcatFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "alternation" and "|=>": the left text unless it is empty, else the right one. The left one is
/// bound, so that it is evaluated once.
class AlternationFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "match": whether a pattern matches in a text.
class MatchFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "find": the first match of a pattern in a text.
class FindFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "replace": the first match of a pattern replaced.
class ReplaceFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "replace_all": every match of a pattern replaced.
class ReplaceAllFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "tolower".
class ToLowerFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "toupper".
class ToUpperFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "trim".
class TrimFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "escape": the body of a quoted text.
class EscapeFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
