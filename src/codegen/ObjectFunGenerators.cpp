#include "codegen/ObjectFunGenerators.h"

#include "ast/ExpressionNode.h"
#include "fliodram/MMAttrExpr.h"
#include "fliodram/MMCollectionExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMTextExpr.h"

void AllFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& retriever,
                               std::string_view /*name*/, const TypePtr& /*type*/,
                               TargetArguments arguments) const {
    const OrvCyclicPtr<MMModelExpr> model(
        new MMModelExpr(retriever.retrieve(anchorText(AnchorKind::THIS))));
    result = TargetPtr(new MMAllInstancesExpr(valueArgument(arguments, 0), model));
}

void ClassFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                 std::string_view /*name*/, const TypePtr& /*type*/,
                                 TargetArguments arguments) const {
    result = TargetPtr(new MMClassNameExpr(objectArgument(arguments, 0)));
}

void AttributeFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                     std::string_view /*name*/, const TypePtr& /*type*/,
                                     TargetArguments arguments) const {
    result = TargetPtr(new MMAttrExpr(valueArgument(arguments, 0), objectArgument(arguments, 1)));
}

void AttributeCollectionFunGenerator::generate(TargetPtr& result,
                                               ObjectVariableRetriever& /*retriever*/,
                                               std::string_view /*name*/, const TypePtr& /*type*/,
                                               TargetArguments arguments) const {
    const OrvCyclicPtr<MMObjectVarExpr> variable(new MMObjectVarExpr);
    const OrvCyclicPtr<MMValueExpr> attribute(
        new MMAttrExpr(valueArgument(arguments, 0), variable));
    const OrvCyclicPtr<MMValueAbsExpr> function(new MMValueAbsExpr(variable, attribute));
    const OrvCyclicPtr<MMStringCollectionExpr> strings(
        new MMMapExpr(function, objectsArgument(arguments, 1)));
    const OrvCyclicPtr<MMValueExpr> comma(new MMConstantExpr(", "));
    result = TargetPtr(new MMDelimiterExpr(comma, strings));
}

void UidFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                               std::string_view /*name*/, const TypePtr& /*type*/,
                               TargetArguments arguments) const {
    result = TargetPtr(new MMUidExpr(objectArgument(arguments, 0)));
}
