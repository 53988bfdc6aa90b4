// The generators that function symbols hold.
#pragma once

#include <cstddef>
#include <span>
#include <string>

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

    /// The object variable of that name, such as "this".
    virtual OrvCyclicPtr<MMObjectVarExpr> retrieve(std::string_view name) = 0;

protected:
    ~ObjectVariableRetriever() = default;
};

/// The targets of a call's arguments, which somebody else holds, in the order of the text.
using TargetArguments = std::span<const TargetPtr>;

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

    /// Sets `result` to the call of the function `name` of this type with these arguments.
    virtual void generate(TargetPtr& result, ObjectVariableRetriever& retriever,
                          std::string_view name, const TypePtr& type,
                          TargetArguments arguments) const = 0;
};

/// An argument as the kind that a generator needs, for the call of a constructor.
template <class Target>
OrvCyclicLoan<Target> argumentAt(TargetArguments arguments, std::size_t index) {
    if (index >= arguments.size()) {
        throwWrongTarget();
    }
    return lend<Target>(arguments[index]);
}
inline OrvCyclicLoan<MMValueExpr> valueArgument(TargetArguments arguments, std::size_t index) {
    return argumentAt<MMValueExpr>(arguments, index);
}
inline OrvCyclicLoan<MMObjectExpr> objectArgument(TargetArguments arguments, std::size_t index) {
    return argumentAt<MMObjectExpr>(arguments, index);
}
inline OrvCyclicLoan<MMObjectCollectionExpr> objectsArgument(TargetArguments arguments,
                                                             std::size_t index) {
    return argumentAt<MMObjectCollectionExpr>(arguments, index);
}
inline OrvCyclicLoan<MMStringCollectionExpr> stringsArgument(TargetArguments arguments,
                                                             std::size_t index) {
    return argumentAt<MMStringCollectionExpr>(arguments, index);
}
