#include "types/TypeExpression.h"

#include <algorithm>

#include "foundation/OrvConverter.h"
#include "foundation/OrvPinnedRegistry.h"

namespace {

template <class Type>
const Type* as(const TypePtr& type) {
    return Type::classof(*type) ? static_cast<const Type*>(type.get()) : nullptr;
}

/// Pins the components of a type and then the type itself.
class PinVisitor : public TypeExpressionVisitor {
public:
    void visitTypeError(const TETypeError& /*type*/) override {}
    void visitBaseType(const TEBaseType& /*type*/) override {}
    void visitCollection(const TECollection& type) override { pinType(type.getElementType()); }
    void visitProduct(const TEProduct& type) override {
        for (std::size_t i = 0; i < type.size(); ++i) {
            pinType(type.component(i));
        }
    }
    void visitFunction(const TEFunction& type) override {
        pinType(type.getDomain());
        pinType(type.getRange());
    }
};

TypePtr makeBase(BaseTypeKind kind) { return TypePtr(new TEBaseType(kind)); }

TypePtr makeCollection(BaseTypeKind elementKind) {
    return TypePtr(new TECollection(makeBase(elementKind)));
}

}  // namespace

TypePtr pinType(const TypePtr& type) noexcept {
    PinVisitor visitor;
    type->accept(visitor);
    return OrvPinnedRegistry::instance().pin(type);
}

TypeExpression::~TypeExpression() = default;
TypeExpressionVisitor::~TypeExpressionVisitor() = default;

bool TETypeError::equals(const TypePtr& other) const {
    return other->getTypeKind() == TypeKind::typeError;
}

bool TEBaseType::equals(const TypePtr& other) const {
    const TEBaseType* const base = as<TEBaseType>(other);
    return base != nullptr && base->baseKind_ == baseKind_;
}

bool TECollection::equals(const TypePtr& other) const {
    const TECollection* const collection = as<TECollection>(other);
    return collection != nullptr && areEqual(elementType_, collection->elementType_);
}

bool TEProduct::equals(const TypePtr& other) const {
    const TEProduct* const product = as<TEProduct>(other);
    return product != nullptr &&
           std::equal(components_.begin(), components_.end(), product->components_.begin(),
                      product->components_.end(), &TypeExpression::areEqual);
}

bool TEFunction::equals(const TypePtr& other) const {
    const TEFunction* const function = as<TEFunction>(other);
    return function != nullptr && areEqual(domain_, function->domain_) &&
           areEqual(range_, function->range_);
}

void TETypeError::accept(TypeExpressionVisitor& visitor) const { visitor.visitTypeError(*this); }
void TEBaseType::accept(TypeExpressionVisitor& visitor) const { visitor.visitBaseType(*this); }
void TECollection::accept(TypeExpressionVisitor& visitor) const { visitor.visitCollection(*this); }
void TEProduct::accept(TypeExpressionVisitor& visitor) const { visitor.visitProduct(*this); }
void TEFunction::accept(TypeExpressionVisitor& visitor) const { visitor.visitFunction(*this); }

// Pins nothing before everything is made.
TypeExpression::Canonical::Canonical()
    : typeError(new TETypeError),
      regexp(makeBase(BaseTypeKind::regexp)),
      string(makeBase(BaseTypeKind::string)),
      integer(makeBase(BaseTypeKind::integer)),
      real(makeBase(BaseTypeKind::real)),
      boolean(makeBase(BaseTypeKind::boolean)),
      object(makeBase(BaseTypeKind::object)),
      unit(makeBase(BaseTypeKind::unit)),
      objectCollection(makeCollection(BaseTypeKind::object)),
      stringCollection(makeCollection(BaseTypeKind::string)) {
    for (const TypePtr* type : {&typeError, &regexp, &string, &integer, &real, &boolean, &object,
                                &unit, &objectCollection, &stringCollection}) {
        pinType(*type);
    }
}
