// Compilations of any text through the three entry points: twice the same, with a reason for each
// that fails.
#include <iostream>

#include "FuzzText.h"
#include "api/ExprParser.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

template <class Expression>
std::string outcome(OrvCountedPtr<Expression> (*compile)(ExprParserDialogs&, const std::string&),
                    const std::string& text) {
    CheckingDialogs dialogs(text);
    const auto compiled = compile(dialogs, text);
    failIf(compiled ? dialogs.errorCount() != 0 : dialogs.errorCount() == 0);
    return compiled ? printedTarget(*compiled) : "";
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    std::cerr.rdbuf(nullptr);  // where dropped characters are reported
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    const std::string condition = outcome(&ExprParser::parseCondition, text);
    const std::string attribute = outcome(&ExprParser::parseAssociatedAttribute, text);
    const std::string association = outcome(&ExprParser::parseComplexAssociation, text);
    failIf(!condition.empty() && condition != attribute);
    failIf(!attribute.empty() && !association.empty());
    failIf(attribute != outcome(&ExprParser::parseAssociatedAttribute, text));
    return 0;
}
