#include "codegen/RelationalOpGenerators.h"

#include <string_view>
#include <utility>

#include "fliodram/MMObjectComparisonExpr.h"
#include "fliodram/MMOperatorExpr.h"
#include "fliodram/MMRegExpExpr.h"

namespace {

// The comparison that an operator's name asks for; 0 for a name that is none.
MMRelOp relationOf(std::string_view name) {
    constexpr std::string_view prefix = "operator";
    if (!name.starts_with(prefix)) {
        return MMRelOp();
    }
    const std::string_view symbol = name.substr(prefix.size());
    if (symbol.size() == 1) {
        return symbol == "="   ? MM_EQUAL
               : symbol == "<" ? MM_LESS
               : symbol == ">" ? MM_GREATER
                               : MMRelOp();
    }
    return symbol == "<>"   ? MM_NOT_EQUAL
           : symbol == "<=" ? MM_LESS_EQUAL
           : symbol == ">=" ? MM_GREATER_EQUAL
                            : MMRelOp();
}

struct SetRelation {
    MMSetOp op;
    bool isExchanged;
};

SetRelation setRelationOf(std::string_view name) {
    switch (relationOf(name)) {
        case MM_EQUAL:
            return {MM_SET_EQUAL, false};
        case MM_NOT_EQUAL:
            return {MM_SET_NOT_EQUAL, false};
        case MM_LESS:
            return {MM_PROPER_SUBSET, false};
        case MM_LESS_EQUAL:
            return {MM_SUBSET, false};
        case MM_GREATER:
            return {MM_PROPER_SUBSET, true};
        case MM_GREATER_EQUAL:
            return {MM_SUBSET, true};
    }
    return {MMSetOp(), false};
}

}  // namespace

void ArithmeticRelationalOpGenerator::generate(TargetPtr& result,
                                               ObjectVariableRetriever& /*retriever*/,
                                               std::string_view name, const TypePtr& /*type*/,
                                               TargetArguments arguments) const {
    result = TargetPtr(new MMRelationalExpr(valueArgument(arguments, 0), relationOf(name),
                                            valueArgument(arguments, 1)));
}

void ObjectRelationalOpGenerator::generate(TargetPtr& result,
                                           ObjectVariableRetriever& /*retriever*/,
                                           std::string_view name, const TypePtr& /*type*/,
                                           TargetArguments arguments) const {
    const MMRelOp relation = relationOf(name);
    const bool isIdentity = relation == MM_EQUAL || relation == MM_NOT_EQUAL;
    result = TargetPtr(new MMObjectEqualityExpr(objectArgument(arguments, 0),
                                                isIdentity ? relation : MMRelOp(),
                                                objectArgument(arguments, 1)));
}

void SetRelationalOpGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                        std::string_view name, const TypePtr& /*type*/,
                                        TargetArguments arguments) const {
    const SetRelation relation = setRelationOf(name);
    OrvCyclicPtr<MMObjectCollectionExpr> left = objectsArgument(arguments, 0);
    OrvCyclicPtr<MMObjectCollectionExpr> right = objectsArgument(arguments, 1);
    if (relation.isExchanged) {
        std::swap(left, right);
    }
    result = TargetPtr(new MMObjectSetExpr(left, relation.op, right));
}

void RegExpRelationalOpGenerator::generate(TargetPtr& result,
                                           ObjectVariableRetriever& /*retriever*/,
                                           std::string_view name, const TypePtr& /*type*/,
                                           TargetArguments arguments) const {
    const OrvCyclicPtr<MMValueExpr> match(
        new MMRegExpMatchExpr(valueArgument(arguments, 1), valueArgument(arguments, 0)));
    result = match;
    if (name == "operator~<>") {
        result = TargetPtr(new MMBooleanExpr(match, MM_NOT, OrvCyclicPtr<MMValueExpr>()));
    }
}
