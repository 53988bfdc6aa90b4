// The catalogue is written down as it is declared: group by group, first the generator that a
// group shares, then its overloads in the order in which look-ups return them and messages list
// them. A signature is a list of parameter types and a result.
#include "namespace/TopLevelEnvironment.h"

#include <algorithm>
#include <initializer_list>

#include "codegen/CollectionFunGenerators.h"
#include "codegen/ConversionFunGenerators.h"
#include "codegen/ObjectFunGenerators.h"
#include "codegen/OpSigFunGenerator.h"
#include "codegen/RelationalOpGenerators.h"
#include "codegen/StringFunGenerators.h"
#include "foundation/OrvPinnedRegistry.h"

namespace {

using Type = TypeExpression;
using FunctionGeneratorPtr = OrvCountedPtr<FunctionCodeGenerator>;

TypePtr domainOf(std::initializer_list<TypePtr> parameters) {
    if (parameters.size() == 1) {
        return *parameters.begin();
    }
    const OrvCountedPtr<TEProduct> product(new TEProduct);
    for (const TypePtr& parameter : parameters) {
        product->addComponent(parameter);
    }
    return product;
}

void declare(Scope& scope, const char* name, std::initializer_list<TypePtr> parameters,
             const TypePtr& result, const FunctionGeneratorPtr& generator) {
    const TypePtr type(new TEFunction(domainOf(parameters), result));
    scope.insert(name, SymbolPtr(new FunctionSymbol(name, type, generator)));
}

// One overload of an operator: two operands of one type, a boolean.
void declareOperator(Scope& scope, const char* name, const TypePtr& operand,
                     const FunctionGeneratorPtr& generator) {
    declare(scope, name, {operand, operand}, Type::booleanType(), generator);
}

template <class Generator>
FunctionGeneratorPtr make() {
    return FunctionGeneratorPtr(new Generator);
}

void declareObjectFunctions(Scope& scope) {
    const TypePtr& string = Type::stringType();
    const TypePtr& object = Type::objectType();
    const TypePtr& objects = Type::objectCollectionType();
    declare(scope, "all", {string}, objects, make<AllFunGenerator>());
    declare(scope, "size", {objects}, Type::integerType(), make<SizeFunGenerator>());
    declare(scope, "class", {object}, string, make<ClassFunGenerator>());
    declare(scope, "attribute", {string, object}, string, make<AttributeFunGenerator>());
    declare(scope, "attribute", {string, objects}, string, make<AttributeCollectionFunGenerator>());
}

void declareTextFunctions(Scope& scope) {
    const TypePtr& string = Type::stringType();
    const TypePtr& strings = Type::stringCollectionType();
    const TypePtr& regexp = Type::regexpType();
    declare(scope, "comma", {strings}, string, make<CommaFunGenerator>());
    declare(scope, "delim", {string, strings}, string, make<DelimFunGenerator>());
    declare(scope, "concat", {strings}, string, make<ConcatFunGenerator>());
    declare(scope, "alternation", {string, string}, string, make<AlternationFunGenerator>());
    declare(scope, "opSig", {Type::objectType()}, string, make<OpSigFunGenerator>());
    declare(scope, "match", {regexp, string}, Type::booleanType(), make<MatchFunGenerator>());
    declare(scope, "find", {regexp, string}, string, make<FindFunGenerator>());
    declare(scope, "replace", {regexp, string, string}, string, make<ReplaceFunGenerator>());
    declare(scope, "replace_all", {regexp, string, string}, string, make<ReplaceAllFunGenerator>());
    declare(scope, "tolower", {string}, string, make<ToLowerFunGenerator>());
    declare(scope, "toupper", {string}, string, make<ToUpperFunGenerator>());
    declare(scope, "trim", {string}, string, make<TrimFunGenerator>());
}

void declareCollectionFunctions(Scope& scope) {
    const TypePtr& objects = Type::objectCollectionType();
    declare(scope, "unique", {objects}, objects, make<UniqueFunGenerator>());
    declare(scope, "unique_stable", {objects}, objects, make<UniqueStableFunGenerator>());
    declare(scope, "reverse", {objects}, objects, make<ReverseFunGenerator>());
}

void declareConversion(Scope& scope, const char* name, std::initializer_list<TypePtr> sources,
                       const TypePtr& result, const FunctionGeneratorPtr& generator) {
    for (const TypePtr& source : sources) {
        declare(scope, name, {source}, result, generator);
    }
}

void declareConversions(Scope& scope) {
    const TypePtr& string = Type::stringType();
    const TypePtr& real = Type::realType();
    const TypePtr& integer = Type::integerType();
    const TypePtr& boolean = Type::booleanType();
    declareConversion(scope, "string", {string, real, integer, boolean}, string,
                      make<StringConversionFunGenerator>());
    declareConversion(scope, "real", {real, string, integer, boolean}, real,
                      make<RealConversionFunGenerator>());
    declareConversion(scope, "integer", {integer, string, real, boolean}, integer,
                      make<IntegerConversionFunGenerator>());
    declareConversion(scope, "boolean", {boolean, string, real, integer}, boolean,
                      make<BooleanConversionFunGenerator>());
    const FunctionGeneratorPtr extraction = make<ObjectConversionFunGenerator>();
    for (const char* name : {"object", "first", "only"}) {
        declare(scope, name, {Type::objectCollectionType()}, Type::objectType(), extraction);
    }
}

void declareEquality(Scope& scope, const TypePtr& operand, const FunctionGeneratorPtr& generator) {
    for (const char* name : {"operator=", "operator<>"}) {
        declareOperator(scope, name, operand, generator);
    }
}

void declareOrder(Scope& scope, const TypePtr& operand, const FunctionGeneratorPtr& generator) {
    declareEquality(scope, operand, generator);
    for (const char* name : {"operator<", "operator<=", "operator>", "operator>="}) {
        declareOperator(scope, name, operand, generator);
    }
}

void declareOperators(Scope& scope) {
    const FunctionGeneratorPtr arithmetic = make<ArithmeticRelationalOpGenerator>();
    const FunctionGeneratorPtr object = make<ObjectRelationalOpGenerator>();
    const FunctionGeneratorPtr set = make<SetRelationalOpGenerator>();
    const FunctionGeneratorPtr regexp = make<RegExpRelationalOpGenerator>();
    declareOrder(scope, Type::stringType(), arithmetic);
    for (const char* name : {"operator~=", "operator~<>"}) {
        declareOperator(scope, name, Type::stringType(), regexp);
    }
    declareOrder(scope, Type::integerType(), arithmetic);
    declareOrder(scope, Type::realType(), arithmetic);
    declareEquality(scope, Type::booleanType(), arithmetic);
    declareEquality(scope, Type::objectType(), object);
    declareOrder(scope, Type::objectCollectionType(), set);
}

// Makes everything that the environment consists of safe to share by threads.
OrvCountedPtr<TopLevelEnvironment> pinned(const OrvCountedPtr<TopLevelEnvironment>& environment) {
    OrvPinnedRegistry& registry = OrvPinnedRegistry::instance();
    for (const Scope::Entry& entry : environment->getScope()->entries()) {
        const auto& function = static_cast<const FunctionSymbol&>(*entry.symbol);
        pinType(function.getType());
        registry.pin(function.getGenerator());
        registry.pin(entry.symbol);
    }
    registry.pin(environment->getScope());
    return registry.pin(environment);
}

}  // namespace

TopLevelEnvironment::TopLevelEnvironment() : scope_(new Scope("TopLevel")) {
    declareObjectFunctions(*scope_);
    declareTextFunctions(*scope_);
    declareCollectionFunctions(*scope_);
    declareConversions(*scope_);
    declareOperators(*scope_);
    declare(*scope_, "escape", {Type::stringType()}, Type::stringType(),
            make<EscapeFunGenerator>());
    declare(*scope_, "uid", {Type::objectType()}, Type::stringType(), make<UidFunGenerator>());
    scope_->buildIndex();
    std::transform(operatorNames.begin(), operatorNames.end(), operators_.begin(),
                   [this](const char* name) { return functions(name); });
}

const OrvCountedPtr<TopLevelEnvironment>& TopLevelEnvironment::instance() {
    static const OrvCountedPtr<TopLevelEnvironment> environment =
        pinned(OrvCountedPtr<TopLevelEnvironment>(new TopLevelEnvironment));
    return environment;
}
