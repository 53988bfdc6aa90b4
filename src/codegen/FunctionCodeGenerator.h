// The generators that function symbols hold.
#pragma once

#include <string>
#include <vector>

#include "codegen/Target.h"
#include "fliodram/MMExpr.h"
#include "fliodram/MMObjectVarExpr.h"
#include "types/TypeExpression.h"

/// Gives a generator the object variables that are seen from the place of a call.
class ObjectVariableRetriever {
public:
    ObjectVariableRetriever() = default;
    ObjectVariableRetriever(const ObjectVariableRetriever&) = delete;
    ObjectVariableRetriever& operator=(const ObjectVariableRetriever&) = delete;
    virtual ~ObjectVariableRetriever();

    /// The object variable of that name, such as "this".
    virtual OrvCyclicPtr<MMObjectVarExpr> retrieve(const std::string& name) = 0;
};

/// Builds the target expression of a call of a built-in function or operator.
///
/// Held by function symbols, one generator by all overloads of a group; without state, shared by
/// all threads. The type checker has seen to it that number and kinds of the arguments are right.
class FunctionCodeGenerator {
public:
    FunctionCodeGenerator() = default;
    FunctionCodeGenerator(const FunctionCodeGenerator&) = delete;
    FunctionCodeGenerator& operator=(const FunctionCodeGenerator&) = delete;
    virtual ~FunctionCodeGenerator();

    /// Sets `result` to the call of the function `name` of this type with these arguments, which
    /// stand in the order of the text.
    virtual void generate(TargetPtr& result, ObjectVariableRetriever& retriever,
                          const std::string& name, OrvCountedPtr<TypeExpression> type,
                          const std::vector<TargetPtr>& arguments) const = 0;
};

/// An argument as the kind that a generator needs.
inline OrvCyclicPtr<MMValueExpr> valueArgument(const std::vector<TargetPtr>& arguments,
                                               std::size_t index) {
    return narrow<MMValueExpr>(arguments.at(index));
}
inline OrvCyclicPtr<MMObjectExpr> objectArgument(const std::vector<TargetPtr>& arguments,
                                                 std::size_t index) {
    return narrow<MMObjectExpr>(arguments.at(index));
}
inline OrvCyclicPtr<MMObjectCollectionExpr> objectsArgument(const std::vector<TargetPtr>& arguments,
                                                            std::size_t index) {
    return narrow<MMObjectCollectionExpr>(arguments.at(index));
}
inline OrvCyclicPtr<MMStringCollectionExpr> stringsArgument(const std::vector<TargetPtr>& arguments,
                                                            std::size_t index) {
    return narrow<MMStringCollectionExpr>(arguments.at(index));
}
