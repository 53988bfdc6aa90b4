#include "codegen/CollectionFunGenerators.h"

#include "fliodram/MMCollectionExpr.h"
#include "fliodram/MMTextExpr.h"

void SizeFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                std::string_view /*name*/, const TypePtr& /*type*/,
                                TargetArguments arguments) const {
    result = TargetPtr(new MMCountExpr(objectsArgument(arguments, 0)));
}

void UniqueFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                  std::string_view /*name*/, const TypePtr& /*type*/,
                                  TargetArguments arguments) const {
    result = TargetPtr(new MMUniqueExpr(objectsArgument(arguments, 0), false));
}

void UniqueStableFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                        std::string_view /*name*/, const TypePtr& /*type*/,
                                        TargetArguments arguments) const {
    result = TargetPtr(new MMUniqueExpr(objectsArgument(arguments, 0), true));
}

void ReverseFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                   std::string_view /*name*/, const TypePtr& /*type*/,
                                   TargetArguments arguments) const {
    result = TargetPtr(new MMReverseExpr(objectsArgument(arguments, 0)));
}
