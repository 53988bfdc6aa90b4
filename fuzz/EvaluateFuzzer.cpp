// Any text, compiled and evaluated on a cyclic model: a value twice, or twice the same sentence.
#include <iostream>

#include "CyclicModel.h"
#include "FuzzText.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationError.h"

namespace {

std::string shown(const MMValue& value) { return std::string(value.asString().view()); }
std::string shown(const std::vector<MMObject>& objects) {
    std::string text;
    for (const MMObject object : objects) {
        failIf(object == mmNoObject);
        text += std::to_string(object) + " ";
    }
    return text;
}

template <class Expression>
std::string outcome(const Expression& expression, MMEvaluationContext& context, MMObject object) {
    try {
        return shown(expression.apply(context, object));
    } catch (const MMEvaluationError& error) {
        failIf(std::string(error.what()).empty());
        return error.isLimit() ? "limit" : error.what();
    }
}

template <class Expression>
void evaluate(const OrvCountedPtr<Expression>& expression) {
    const CyclicModel& model = CyclicModel::instance();
    MMEvaluationContext context(model.model(), fuzzLimits());
    for (std::size_t number = 0; expression && number < 3; ++number) {
        const MMObject object = model.object(number * 17);
        const std::string first = outcome(*expression, context, object);
        failIf(first != outcome(*expression, context, object));
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    std::cerr.rdbuf(nullptr);  // where dropped characters are reported
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    CheckingDialogs dialogs(text);
    evaluate(ExprParser::parseAssociatedAttribute(dialogs, text));
    evaluate(ExprParser::parseComplexAssociation(dialogs, text));
    return 0;
}
