// Types: equality over all pairs of a grid, and printed forms.
#include "types/TypeExpression.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "foundation/OrvConverter.h"
#include "support/OrvException.h"
#include "types/TypeExprPrintVisitor.h"

namespace {

TypePtr base(BaseTypeKind kind) { return TypePtr(new TEBaseType(kind)); }

TypePtr product(const std::vector<TypePtr>& components) {
    TEProduct* const type = new TEProduct;
    TypePtr result(type);
    for (const TypePtr& component : components) {
        type->addComponent(component);
    }
    return result;
}

// Types of which no two are equal, each made anew.
std::vector<TypePtr> grid() {
    const TypePtr integer = base(BaseTypeKind::integer);
    const TypePtr string = base(BaseTypeKind::string);
    std::vector<TypePtr> types = {TypePtr(new TETypeError)};
    for (std::uint32_t kind = 0; kind <= 7; ++kind) {
        types.push_back(base(static_cast<BaseTypeKind>(kind)));
    }
    for (const TypePtr& element :
         {integer, string, base(BaseTypeKind::object), TypePtr(new TECollection(integer))}) {
        types.emplace_back(new TECollection(element));
    }
    for (const std::vector<TypePtr>& components :
         std::vector<std::vector<TypePtr>>{{},
                                           {integer},
                                           {integer, string},
                                           {string, integer},
                                           {integer, string, integer},
                                           {product({integer})}}) {
        types.push_back(product(components));
    }
    types.emplace_back(new TEFunction(integer, string));
    types.emplace_back(new TEFunction(string, integer));
    types.emplace_back(new TEFunction(string, string));
    return types;
}

TEST(TypeExpression, EqualityIsStructural) {
    const std::vector<TypePtr> left = grid();
    const std::vector<TypePtr> right = grid();
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < right.size(); ++j) {
            EXPECT_EQ(left[i]->equals(right[j]), i == j)
                << printedType(left[i]) << " and " << printedType(right[j]);
        }
    }
    EXPECT_THROW((void)left[0]->equals(TypePtr()), OrvException);
}

TEST(TypeExpression, CanonicalInstances) {
    struct Case {
        const TypePtr& (*shared)();
        bool (*is)(const TypePtr&);
        TypePtr fresh;
    };
    using T = TypeExpression;
    const std::vector<Case> cases = {
        {&T::typeError, &T::isTypeError, TypePtr(new TETypeError)},
        {&T::booleanType, &T::isBoolean, base(BaseTypeKind::boolean)},
        {&T::regexpType, &T::isRegexp, base(BaseTypeKind::regexp)},
        {&T::stringType, &T::isString, base(BaseTypeKind::string)},
        {&T::integerType, &T::isInteger, base(BaseTypeKind::integer)},
        {&T::realType, &T::isReal, base(BaseTypeKind::real)},
        {&T::objectType, &T::isObject, base(BaseTypeKind::object)},
        {&T::unitType, &T::isUnit, base(BaseTypeKind::unit)},
        {&T::objectCollectionType, &T::isObjectCollection,
         TypePtr(new TECollection(base(BaseTypeKind::object)))},
        {&T::stringCollectionType, &T::isStringCollection,
         TypePtr(new TECollection(base(BaseTypeKind::string)))},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(cases[i].shared().get(), cases[i].shared().get()) << i;
        for (std::size_t j = 0; j < cases.size(); ++j) {
            EXPECT_EQ(cases[i].is(cases[j].shared()), i == j) << i << ' ' << j;
            EXPECT_EQ(cases[i].is(cases[j].fresh), i == j) << i << ' ' << j;
        }
    }
}

TEST(TypeExpression, PrintedForms) {
    const TypePtr integer = base(BaseTypeKind::integer);
    const std::vector<std::pair<TypePtr, std::string>> cases = {
        {TypePtr(new TETypeError), "TypeError"},
        {base(BaseTypeKind::regexp), "regexp"},
        {base(BaseTypeKind::string), "string"},
        {integer, "integer"},
        {base(BaseTypeKind::real), "real"},
        {base(BaseTypeKind::boolean), "boolean"},
        {base(BaseTypeKind::object), "object"},
        {base(BaseTypeKind::unit), "unit"},
        {base(static_cast<BaseTypeKind>(7)), "unknown"},
        {TypeExpression::objectCollectionType(), "( object ) collection"},
        {TypePtr(new TECollection(TypePtr())), "( <<null>> ) collection"},
        {product({}), "(  )"},
        {product({integer}), "( integer )"},
        {product({integer, TypePtr(), product({integer, integer})}),
         "( integer * <<null>> * ( integer * integer ) )"},
        {TypePtr(new TEFunction(TypePtr(), integer)), "( <<null>> -> integer )"},
        {TypePtr(new TEFunction(product({integer, integer}), base(BaseTypeKind::boolean))),
         "( ( integer * integer ) -> boolean )"},
    };
    for (const auto& [type, text] : cases) {
        EXPECT_EQ(printedType(type), text);
    }
}

TEST(TypeExpression, NarrowsByKind) {
    const TypePtr function(new TEFunction(TypeExpression::unitType(), TypeExpression::realType()));
    EXPECT_TRUE((OrvConverter<TEFunction, TypeExpression>::toCounted(function)));
    EXPECT_FALSE((OrvConverter<TEProduct, TypeExpression>::toCounted(function)));
    EXPECT_FALSE((OrvConverter<TEBaseType, TypeExpression>::toCounted(function)));
}

}  // namespace
