#include "api/TypeRequirement.h"

TypeRequirement::~TypeRequirement() = default;

bool ConditionTypeRequirement::check(const TypePtr& type) const {
    return TypeExpression::isBoolean(type);
}

std::string ConditionTypeRequirement::text() const { return "{boolean}"; }

bool AssociatedAttributeTypeRequirement::check(const TypePtr& type) const {
    return TypeExpression::isString(type) || TypeExpression::isInteger(type) ||
           TypeExpression::isReal(type) || TypeExpression::isBoolean(type);
}

std::string AssociatedAttributeTypeRequirement::text() const {
    return "{string} or {integer} or {real} or {boolean}";
}

bool ComplexAssociationTypeRequirement::check(const TypePtr& type) const {
    return TypeExpression::isObjectCollection(type);
}

std::string ComplexAssociationTypeRequirement::text() const { return "{object collection}"; }
