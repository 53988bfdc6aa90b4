#include "codegen/StringFunGenerators.h"

#include "codegen/MMUndocumentedEscapeExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMIfExpr.h"
#include "fliodram/MMLetExpr.h"
#include "fliodram/MMOperatorExpr.h"
#include "fliodram/MMRegExpExpr.h"
#include "fliodram/MMTextExpr.h"

void CommaFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                 std::string_view /*name*/, const TypePtr& /*type*/,
                                 TargetArguments arguments) const {
    const OrvCyclicPtr<MMValueExpr> comma(new MMConstantExpr(", "));
    result = TargetPtr(new MMDelimiterExpr(comma, stringsArgument(arguments, 0)));
}

void DelimFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                 std::string_view /*name*/, const TypePtr& /*type*/,
                                 TargetArguments arguments) const {
    result =
        TargetPtr(new MMDelimiterExpr(valueArgument(arguments, 0), stringsArgument(arguments, 1)));
}

void ConcatFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                  std::string_view /*name*/, const TypePtr& /*type*/,
                                  TargetArguments arguments) const {
    const OrvCyclicPtr<MMValueExpr> nothing(new MMConstantExpr(""));
    result = TargetPtr(new MMDelimiterExpr(nothing, stringsArgument(arguments, 0)));
}

void AlternationFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                       std::string_view /*name*/, const TypePtr& /*type*/,
                                       TargetArguments arguments) const {
    const OrvCyclicPtr<MMValueExpr> right = valueArgument(arguments, 1);
    const OrvCyclicPtr<MMValueBindingExpr> binding(
        new MMValueBindingExpr(valueArgument(arguments, 0)));
    const OrvCyclicPtr<MMValueExpr> nothing(new MMConstantExpr(""));
    const OrvCyclicPtr<MMValueExpr> test(new MMRelationalExpr(binding, MM_NOT_EQUAL, nothing));
    const OrvCyclicPtr<MMValueExpr> choice(new MMIfValueExpr(test, binding, right));
    result = TargetPtr(new MMLetValueExpr(OrvSimplePtr<MMCachedExpr>(binding.get()), choice));
}

void MatchFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                 std::string_view /*name*/, const TypePtr& /*type*/,
                                 TargetArguments arguments) const {
    result =
        TargetPtr(new MMRegExpMatchExpr(valueArgument(arguments, 0), valueArgument(arguments, 1)));
}

void FindFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                std::string_view /*name*/, const TypePtr& /*type*/,
                                TargetArguments arguments) const {
    result =
        TargetPtr(new MMRegExpFindExpr(valueArgument(arguments, 0), valueArgument(arguments, 1)));
}

void ReplaceFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                   std::string_view /*name*/, const TypePtr& /*type*/,
                                   TargetArguments arguments) const {
    result = TargetPtr(new MMRegExpReplaceExpr(
        valueArgument(arguments, 0), valueArgument(arguments, 1), valueArgument(arguments, 2)));
}

void ReplaceAllFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                      std::string_view /*name*/, const TypePtr& /*type*/,
                                      TargetArguments arguments) const {
    const OrvCyclicPtr<MMRegExpReplaceExpr> replacement(new MMRegExpReplaceExpr(
        valueArgument(arguments, 0), valueArgument(arguments, 1), valueArgument(arguments, 2)));
    replacement->replaceAll(true);
    result = replacement;
}

void ToLowerFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                   std::string_view /*name*/, const TypePtr& /*type*/,
                                   TargetArguments arguments) const {
    result = TargetPtr(new MMStringManipulationExpr(MM_LOWER, valueArgument(arguments, 0)));
}

void ToUpperFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                   std::string_view /*name*/, const TypePtr& /*type*/,
                                   TargetArguments arguments) const {
    result = TargetPtr(new MMStringManipulationExpr(MM_UPPER, valueArgument(arguments, 0)));
}

void TrimFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                std::string_view /*name*/, const TypePtr& /*type*/,
                                TargetArguments arguments) const {
    result = TargetPtr(new MMStringManipulationExpr(MM_TRIM, valueArgument(arguments, 0)));
}

void EscapeFunGenerator::generate(TargetPtr& result, ObjectVariableRetriever& /*retriever*/,
                                  std::string_view /*name*/, const TypePtr& /*type*/,
                                  TargetArguments arguments) const {
    result = TargetPtr(new MMUndocumentedEscapeExpr(valueArgument(arguments, 0)));
}
