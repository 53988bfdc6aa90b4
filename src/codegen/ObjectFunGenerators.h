// Generators of the built-in functions that ask objects and the model.
#pragma once

#include "codegen/FunctionCodeGenerator.h"

/// "all": every instance of the named class in the model of the object bound to "this".
class AllFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "class": the name of an object's class.
class ClassFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "attribute" of an object.
class AttributeFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "attribute" of the objects of a collection, joined by commas.
class AttributeCollectionFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};

/// "uid": the text that identifies an object.
class UidFunGenerator : public FunctionCodeGenerator {
public:
    void generate(TargetPtr& result, ObjectVariableRetriever& retriever, std::string_view name,
                  const TypePtr& type, TargetArguments arguments) const override;
};
