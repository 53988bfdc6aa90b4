// The generator of the operation signature, which is written in the language itself.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// "opSig": the signature of an operation as a text. Its expression is compiled anew for every call
/// of the built-in that is generated; nothing is shared between calls.
class OpSigFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
