// What an entry point demands of the type of a whole expression.
#pragma once

#include <string>

#include "types/TypeExpression.h"

/// The result type that one kind of expression must have. Stateless; made on the stack by the
/// entry point that needs it, for the time of one compilation.
class TypeRequirement {
public:
    TypeRequirement() = default;
    TypeRequirement(const TypeRequirement&) = delete;
    TypeRequirement& operator=(const TypeRequirement&) = delete;
    virtual ~TypeRequirement();

    /// Whether an expression of this type will do.
    virtual bool check(const OrvCountedPtr<TypeExpression>& type) const = 0;
    /// The types that will do, as messages write them: "{boolean}".
    virtual std::string text() const = 0;
};

/// A condition: a boolean.
class ConditionTypeRequirement : public TypeRequirement {
public:
    bool check(const OrvCountedPtr<TypeExpression>& type) const override;
    std::string text() const override;
};

/// An associated attribute: a string, a number or a boolean.
class AssociatedAttributeTypeRequirement : public TypeRequirement {
public:
    bool check(const OrvCountedPtr<TypeExpression>& type) const override;
    std::string text() const override;
};

/// A complex association: a collection of objects.
class ComplexAssociationTypeRequirement : public TypeRequirement {
public:
    bool check(const OrvCountedPtr<TypeExpression>& type) const override;
    std::string text() const override;
};
