#include "codegen/VariableCodeGenerator.h"

#include "codegen/ResultKind.h"
#include "fliodram/MMLetExpr.h"
#include "fliodram/MMObjectVarExpr.h"

void throwWrongTarget() {
    throwLogged(OrvAssertion("target", "Target", 0,
                             "A generated expression is not of the kind that its place needs."));
}

VariableCodeGenerator::~VariableCodeGenerator() = default;

TargetPtr ObjectVarGenerator::generate(const TypePtr& /*type*/, std::string_view /*name*/) const {
    return TargetPtr(new MMObjectVarExpr);
}

TargetPtr LetVarGenerator::generate(const TypePtr& type, std::string_view /*name*/) const {
    switch (resultKindOf(type)) {
        case ResultKind::value:
            return TargetPtr(new MMValueBindingExpr);
        case ResultKind::object:
            return TargetPtr(new MMObjectBindingExpr);
        case ResultKind::objectCollection:
            return TargetPtr(new MMObjectCollectionBindingExpr);
        case ResultKind::stringCollection:
            return TargetPtr(new MMStringCollectionBindingExpr);
        case ResultKind::none:
            break;
    }
    throwLogged(OrvAssertion("false", "VariableCodeGenerator", 0,
                             "Type is not appropriate for generating a let-bound variable."));
}
