#include "codegen/ResultKind.h"

ResultKind resultKindOf(const TypePtr& type) {
    if (TypeExpression::isString(type) || TypeExpression::isInteger(type) ||
        TypeExpression::isReal(type) || TypeExpression::isBoolean(type)) {
        return ResultKind::value;
    }
    if (TypeExpression::isObject(type)) {
        return ResultKind::object;
    }
    if (TypeExpression::isObjectCollection(type)) {
        return ResultKind::objectCollection;
    }
    return TypeExpression::isStringCollection(type) ? ResultKind::stringCollection
                                                    : ResultKind::none;
}
