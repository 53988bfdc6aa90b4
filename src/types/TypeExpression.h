// The types of the expression language: small immutable trees, compared by their structure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/OrvCountedPtr.h"

class TypeExpressionVisitor;

/// The class of a type expression.
enum class TypeKind : std::uint32_t {
    typeError = 0,
    baseType = 1,
    collection = 2,
    product = 3,
    function = 4
};

/// The types that are not made of others.
enum class BaseTypeKind : std::uint32_t {
    regexp = 0,
    string = 1,
    integer = 2,
    real = 3,
    boolean = 4,
    object = 5,
    unit = 6
};

/// The type of an expression, of a variable or of a function.
///
/// Shared through counted pointers and never changed once it is shared. Structural equality is the
/// only relation between types: there are no subtypes and nothing converts by itself.
///
/// The ten types that the language uses most are shared by the whole process: they are made on
/// first use, pinned, and may be used by any number of threads.
class TypeExpression : public OrvCountedObject {
public:
    /// A number for each structure that a canonical instance has, and another one for all others.
    enum class Structure : std::uint8_t {
        other,
        typeError,
        regexp,
        string,
        integer,
        real,
        boolean,
        object,
        unit,
        objectCollection,
        stringCollection
    };

    TypeExpression(const TypeExpression&) = delete;
    TypeExpression& operator=(const TypeExpression&) = delete;
    ~TypeExpression() override;

    /// True when both types have the same structure; throws OrvException on an empty pointer.
    virtual bool equals(const OrvCountedPtr<TypeExpression>& other) const = 0;
    virtual void accept(TypeExpressionVisitor& visitor) const = 0;

    TypeKind getTypeKind() const { return typeKind_; }
    Structure getStructure() const { return structure_; }

    /// The canonical instances.
    static const OrvCountedPtr<TypeExpression>& typeError() { return canonical().typeError; }
    static const OrvCountedPtr<TypeExpression>& booleanType() { return canonical().boolean; }
    static const OrvCountedPtr<TypeExpression>& regexpType() { return canonical().regexp; }
    static const OrvCountedPtr<TypeExpression>& stringType() { return canonical().string; }
    static const OrvCountedPtr<TypeExpression>& integerType() { return canonical().integer; }
    static const OrvCountedPtr<TypeExpression>& realType() { return canonical().real; }
    static const OrvCountedPtr<TypeExpression>& objectType() { return canonical().object; }
    static const OrvCountedPtr<TypeExpression>& unitType() { return canonical().unit; }
    static const OrvCountedPtr<TypeExpression>& objectCollectionType() {
        return canonical().objectCollection;
    }
    static const OrvCountedPtr<TypeExpression>& stringCollectionType() {
        return canonical().stringCollection;
    }

    /// True when both are one type: the same object, or two of the same structure.
    static bool areEqual(const OrvCountedPtr<TypeExpression>& left,
                         const OrvCountedPtr<TypeExpression>& right) {
        return left == right || left->equals(right);
    }

    /// Whether a type equals the canonical instance, wherever it was made.
    static bool isTypeError(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::typeError;
    }
    static bool isBoolean(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::boolean;
    }
    static bool isRegexp(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::regexp;
    }
    static bool isString(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::string;
    }
    static bool isInteger(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::integer;
    }
    static bool isReal(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::real;
    }
    static bool isObject(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::object;
    }
    static bool isUnit(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::unit;
    }
    static bool isObjectCollection(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::objectCollection;
    }
    static bool isStringCollection(const OrvCountedPtr<TypeExpression>& type) {
        return type->structure_ == Structure::stringCollection;
    }

protected:
    explicit TypeExpression(TypeKind typeKind, Structure structure = Structure::other)
        : typeKind_(typeKind), structure_(structure) {}

private:
    struct Canonical {
        Canonical();
        OrvCountedPtr<TypeExpression> typeError, regexp, string, integer, real, boolean, object,
            unit, objectCollection, stringCollection;
    };
    static const Canonical& canonical() {
        static const Canonical types;
        return types;
    }

    TypeKind typeKind_;
    Structure structure_;
};

using TypePtr = OrvCountedPtr<TypeExpression>;

/// The type of an expression that failed to check: no rule complains about it again.
class TETypeError : public TypeExpression {
public:
    TETypeError() : TypeExpression(TypeKind::typeError, Structure::typeError) {}
    bool equals(const TypePtr& other) const override;
    void accept(TypeExpressionVisitor& visitor) const override;
};

/// A type that is not made of others.
class TEBaseType : public TypeExpression {
public:
    explicit TEBaseType(BaseTypeKind baseKind)
        : TypeExpression(TypeKind::baseType, structureOf(baseKind)), baseKind_(baseKind) {}
    bool equals(const TypePtr& other) const override;
    void accept(TypeExpressionVisitor& visitor) const override;

    BaseTypeKind getBaseKind() const { return baseKind_; }
    static bool classof(const TypeExpression& type) {
        return type.getTypeKind() == TypeKind::baseType;
    }

private:
    // The structures of the base types follow each other as their kinds do.
    static Structure structureOf(BaseTypeKind baseKind) {
        return static_cast<Structure>(static_cast<std::uint32_t>(Structure::regexp) +
                                      static_cast<std::uint32_t>(baseKind));
    }

    BaseTypeKind baseKind_;
};

/// An ordered collection; the language has those of objects and of strings.
class TECollection : public TypeExpression {
public:
    explicit TECollection(const TypePtr& elementType)
        : TypeExpression(TypeKind::collection, structureOf(elementType)),
          elementType_(elementType) {}
    bool equals(const TypePtr& other) const override;
    void accept(TypeExpressionVisitor& visitor) const override;

    const TypePtr& getElementType() const { return elementType_; }
    static bool classof(const TypeExpression& type) {
        return type.getTypeKind() == TypeKind::collection;
    }

private:
    static Structure structureOf(const TypePtr& elementType) {
        switch (elementType ? elementType->getStructure() : Structure::other) {
            case Structure::object:
                return Structure::objectCollection;
            case Structure::string:
                return Structure::stringCollection;
            default:
                return Structure::other;
        }
    }

    TypePtr elementType_;
};

/// The type of a tuple, and the domain of a function of several arguments. Components are added
/// while it is built, before it is shared.
class TEProduct : public TypeExpression {
public:
    TEProduct() : TypeExpression(TypeKind::product) {}
    bool equals(const TypePtr& other) const override;
    void accept(TypeExpressionVisitor& visitor) const override;

    void addComponent(const TypePtr& component) { components_.push_back(component); }
    std::size_t size() const { return components_.size(); }
    const std::vector<TypePtr>& components() const { return components_; }
    /// The component at `index`, from 0; throws std::out_of_range past the last one.
    const TypePtr& component(std::size_t index) const { return components_.at(index); }
    static bool classof(const TypeExpression& type) {
        return type.getTypeKind() == TypeKind::product;
    }

private:
    std::vector<TypePtr> components_;
};

/// The type of a function, from a domain to a range.
class TEFunction : public TypeExpression {
public:
    TEFunction(const TypePtr& domain, const TypePtr& range)
        : TypeExpression(TypeKind::function), domain_(domain), range_(range) {}
    bool equals(const TypePtr& other) const override;
    void accept(TypeExpressionVisitor& visitor) const override;

    const TypePtr& getDomain() const { return domain_; }
    const TypePtr& getRange() const { return range_; }
    static bool classof(const TypeExpression& type) {
        return type.getTypeKind() == TypeKind::function;
    }

private:
    TypePtr domain_;
    TypePtr range_;
};

/// The structures of a list of types as one number, by which lists are compared at once.
///
/// It stands for the list unless that is too long, or a type in it has the structure of no
/// canonical instance.
class TypeStructures {
public:
    void add(const TypeExpression& type) {
        isExact_ = isExact_ && type.getStructure() != TypeExpression::Structure::other &&
                   (number_ >> (bits - bitsOfOne)) == 0;
        number_ = number_ << bitsOfOne | static_cast<std::uint64_t>(type.getStructure());
    }

    /// Whether the number stands for the list. Two lists of which it does are equal if it is.
    bool isExact() const { return isExact_; }
    friend bool operator==(const TypeStructures& left, const TypeStructures& right) = default;

private:
    static constexpr unsigned bits = 64;
    static constexpr unsigned bitsOfOne = 4;

    std::uint64_t number_ = 0;
    bool isExact_ = true;
};

/// One operation for each class of type expression.
class TypeExpressionVisitor {
public:
    TypeExpressionVisitor() = default;
    TypeExpressionVisitor(const TypeExpressionVisitor&) = delete;
    TypeExpressionVisitor& operator=(const TypeExpressionVisitor&) = delete;
    virtual ~TypeExpressionVisitor();

    virtual void visitTypeError(const TETypeError& type) = 0;
    virtual void visitBaseType(const TEBaseType& type) = 0;
    virtual void visitCollection(const TECollection& type) = 0;
    virtual void visitProduct(const TEProduct& type) = 0;
    virtual void visitFunction(const TEFunction& type) = 0;
};

/// Pins a type and all its components, so that threads may share it; returns it.
TypePtr pinType(const TypePtr& type) noexcept;
