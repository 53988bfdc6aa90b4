#include "codegen/OpSigFunGenerator.h"

#include "api/CodeGeneratorDialogs.h"
#include "api/ExprParser.h"
#include "fliodram/MMTextExpr.h"

namespace {

// The signature, as an expression of the language about the operation that is "this".
const char* const signatureText =
    "if class this = \"Operation\""
    "          then $name"
    "             + \"(\""
    "             + comma map {$name + \" : \" + ($type |=> "
    "\"<<unspecified>>\")} over [parameter]"
    "             + \") : \" + ($type |=> \"void\")"
    "          else \"<<object is not an Operation; actual class of object "
    "is \" + class this + \">>\"";

}  // namespace

void OpSigFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                 std::string_view /*name*/, const TypePtr& /*type*/,
                                 TargetArguments arguments) const {
    CodeGeneratorDialogs dialogs;
    const OrvCountedPtr<MMValueAbsExpr> signature =
        ExprParser::parseAssociatedAttribute(dialogs, signatureText);
    result = TargetPtr(new MMApplyValueExpr(
        narrow<MMValueAbsExpr>(OrvConverter<OrvCyclicPtrBody, MMValueAbsExpr>::toCyclic(signature)),
        objectArgument(arguments, 0)));
}
