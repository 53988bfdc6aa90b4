// Compilations of any text through the three entry points: twice the same, with a reason for each
// that fails.
#include <iostream>

#include "FuzzText.h"
#include "api/ExprParser.h"
#include "fliodram/MMTargetPrinter.h"

namespace {

/// What a compilation gives: the printed expression, empty for none, and the messages.
struct Outcome {
    std::string target;
    std::string messages;
    bool operator==(const Outcome&) const = default;
};

template <class Expression>
using EntryPoint = OrvCountedPtr<Expression> (*)(ExprParserDialogs&, const std::string&);

template <class Expression>
Outcome outcome(EntryPoint<Expression> compile, const std::string& text) {
    CheckingDialogs dialogs(text);
    const auto compiled = compile(dialogs, text);
    failIf(compiled ? dialogs.errorCount() != 0 : dialogs.errorCount() == 0);
    return {compiled ? printedTarget(*compiled) : "", dialogs.shown()};
}

template <class Expression>
std::string targetOf(EntryPoint<Expression> compile, const std::string& text) {
    const Outcome first = outcome(compile, text);
    failIf(!(first == outcome(compile, text)));
    return first.target;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    std::cerr.rdbuf(nullptr);  // where dropped characters are reported
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    const std::string condition = targetOf(&ExprParser::parseCondition, text);
    const std::string attribute = targetOf(&ExprParser::parseAssociatedAttribute, text);
    const std::string association = targetOf(&ExprParser::parseComplexAssociation, text);
    failIf(!condition.empty() && condition != attribute);
    failIf(!attribute.empty() && !association.empty());
    return 0;
}
