#include "codegen/ConversionFunGenerators.h"

#include "fliodram/MMTextExpr.h"

void StringConversionFunGenerator::generate(TargetPtr& result,
                                            ObjectVariableRetriever& /*retriever*/,
                                            std::string_view /*name*/, const TypePtr& /*type*/,
                                            TargetArguments arguments) const {
    result = TargetPtr(new MMConversionExpr(valueArgument(arguments, 0), MM_STRING));
}

void RealConversionFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                          std::string_view /*name*/, const TypePtr& /*type*/,
                                          TargetArguments arguments) const {
    result = TargetPtr(new MMConversionExpr(valueArgument(arguments, 0), MM_REAL));
}

void IntegerConversionFunGenerator::generate(TargetPtr& result,
                                             ObjectVariableRetriever& /*retriever*/,
                                             std::string_view /*name*/, const TypePtr& /*type*/,
                                             TargetArguments arguments) const {
    result = TargetPtr(new MMConversionExpr(valueArgument(arguments, 0), MM_INTEGER));
}

void BooleanConversionFunGenerator::generate(TargetPtr& result,
                                             ObjectVariableRetriever& /*retriever*/,
                                             std::string_view /*name*/, const TypePtr& /*type*/,
                                             TargetArguments arguments) const {
    result = TargetPtr(new MMConversionExpr(valueArgument(arguments, 0), MM_BOOLEAN));
}

void ObjectConversionFunGenerator::generate(TargetPtr& result,
                                            ObjectVariableRetriever& /*retriever*/,
                                            std::string_view name, const TypePtr& /*type*/,
                                            TargetArguments arguments) const {
    const OrvCyclicPtr<MMObjectExtractionExpr> extraction(
        new MMObjectExtractionExpr(objectsArgument(arguments, 0)));
    extraction->choice(name == "first" ? MMObjectExtractionExpr::first
                                       : MMObjectExtractionExpr::only);
    result = extraction;
}
