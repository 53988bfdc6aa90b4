#include "api/ExprParser.h"

#include "api/AttributeShortcut.h"
#include "api/CodeGeneratorDialogs.h"
#include "api/CompileDriver.h"
#include "api/TypeRequirement.h"
#include "foundation/OrvConverter.h"

namespace {

// Wraps a compiled body as a function of the object on which it will be evaluated. With that the
// graph is whole.
template <class Abstraction, class Body>
OrvCountedPtr<Abstraction> abstractionOf(const OrvCountedPtr<CompileResult>& result) {
    if (!result) {
        return {};
    }
    // The result holds both while the abstraction takes them over.
    const OrvCyclicLoan<MMObjectVarExpr> variable(result->objectVariable.get());
    const OrvCyclicLoan<OrvCyclicPtrBody> whole(result->body.get());
    const OrvCyclicLoan<Body> body(OrvConverter<Body, OrvCyclicPtrBody>::toBorrowed(whole));
    OrvCountedPtr<Abstraction> abstraction(new Abstraction(variable, body));
    abstraction->settle();
    return abstraction;
}

// Compiles a text whose type must be what the requirement asks for.
template <class Requirement, class Abstraction, class Body>
OrvCountedPtr<Abstraction> compileAs(ExprParserDialogs& dialogs, const std::string& text,
                                     SourceMap* map) {
    const Requirement requirement;
    OrvCompilationMemory memory;
    return abstractionOf<Abstraction, Body>(
        CompileDriver::compile(memory, dialogs, text, requirement, map));
}

constexpr auto compileCondition = &compileAs<ConditionTypeRequirement, MMValueAbsExpr, MMValueExpr>;
constexpr auto compileAssociatedAttribute =
    &compileAs<AssociatedAttributeTypeRequirement, MMValueAbsExpr, MMValueExpr>;
constexpr auto compileAssociation = &compileAs<ComplexAssociationTypeRequirement,
                                               MMObjectCollectionAbsExpr, MMObjectCollectionExpr>;

}  // namespace

OrvCountedPtr<MMValueAbsExpr> ExprParser::parseCondition(ExprParserDialogs& dialogs,
                                                         const std::string& text) {
    return compileCondition(dialogs, text, nullptr);
}

OrvCountedPtr<MMValueAbsExpr> ExprParser::parseMappedCondition(ExprParserDialogs& dialogs,
                                                               const std::string& text,
                                                               SourceMap& map) {
    return compileCondition(dialogs, text, &map);
}

OrvCountedPtr<MMValueAbsExpr> ExprParser::parseAssociatedAttribute(ExprParserDialogs& dialogs,
                                                                   const std::string& text) {
    const OrvCountedPtr<CompileResult> result = compileAttributeShortcut(text);
    return result ? abstractionOf<MMValueAbsExpr, MMValueExpr>(result)
                  : compileAssociatedAttribute(dialogs, text, nullptr);
}

// The short-cut knows no places, so a bare attribute is compiled like any other text, and shows no
// message either way. Only where its name is a keyword is it left to the short-cut.
OrvCountedPtr<MMValueAbsExpr> ExprParser::parseMappedAssociatedAttribute(ExprParserDialogs& dialogs,
                                                                         const std::string& text,
                                                                         SourceMap& map) {
    if (findBareAttribute(text).empty()) {
        return compileAssociatedAttribute(dialogs, text, &map);
    }
    CodeGeneratorDialogs silent;
    OrvCountedPtr<MMValueAbsExpr> compiled = compileAssociatedAttribute(silent, text, &map);
    return compiled ? compiled
                    : abstractionOf<MMValueAbsExpr, MMValueExpr>(compileAttributeShortcut(text));
}

OrvCountedPtr<MMObjectCollectionAbsExpr> ExprParser::parseComplexAssociation(
    ExprParserDialogs& dialogs, const std::string& text) {
    return compileAssociation(dialogs, text, nullptr);
}

OrvCountedPtr<MMObjectCollectionAbsExpr> ExprParser::parseMappedComplexAssociation(
    ExprParserDialogs& dialogs, const std::string& text, SourceMap& map) {
    return compileAssociation(dialogs, text, &map);
}
