#include "api/ExprParser.h"

#include "api/AttributeShortcut.h"
#include "api/CompileDriver.h"
#include "api/TypeRequirement.h"
#include "foundation/OrvConverter.h"

namespace {

// Wraps a compiled body as a function of the object on which it will be evaluated.
template <class Abstraction, class Body>
OrvCountedPtr<Abstraction> abstractionOf(const OrvCountedPtr<CompileResult>& result) {
    if (!result) {
        return {};
    }
    return OrvCountedPtr<Abstraction>(new Abstraction(
        OrvConverter<MMObjectVarExpr, MMObjectVarExpr>::toCyclic(result->objectVariable),
        OrvConverter<Body, OrvCyclicPtrBody>::toCyclic(result->body)));
}

}  // namespace

OrvCountedPtr<MMValueAbsExpr> ExprParser::parseCondition(ExprParserDialogs& dialogs,
                                                         const std::string& text) {
    const ConditionTypeRequirement requirement;
    return abstractionOf<MMValueAbsExpr, MMValueExpr>(
        CompileDriver::compile(dialogs, text, requirement));
}

OrvCountedPtr<MMValueAbsExpr> ExprParser::parseAssociatedAttribute(ExprParserDialogs& dialogs,
                                                                   const std::string& text) {
    const AssociatedAttributeTypeRequirement requirement;
    OrvCountedPtr<CompileResult> result = compileAttributeShortcut(text);
    if (!result) {
        result = CompileDriver::compile(dialogs, text, requirement);
    }
    return abstractionOf<MMValueAbsExpr, MMValueExpr>(result);
}

OrvCountedPtr<MMObjectCollectionAbsExpr> ExprParser::parseComplexAssociation(
    ExprParserDialogs& dialogs, const std::string& text) {
    const ComplexAssociationTypeRequirement requirement;
    return abstractionOf<MMObjectCollectionAbsExpr, MMObjectCollectionExpr>(
        CompileDriver::compile(dialogs, text, requirement));
}
