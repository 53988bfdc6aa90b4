// mmq check: compiles an expression and shows what there is to say about it.
#include <iostream>

#include "Commands.h"
#include "Compilation.h"
#include "ExitStatus.h"
#include "ModelNames.h"
#include "names/NameCheck.h"

namespace mmq {

namespace {

int checkNames(const Options& options, const CompiledExpression& expression, Messages& messages) {
    const ModelNames names(options);
    const NameVocabulary& vocabulary = *names.vocabulary();
    if (!options.onClass.empty() && !vocabulary.findClass(options.onClass)) {
        std::cerr << "mmq: " << sentenceForClass(options.onClass, vocabulary) << '\n';
        showAdvice(hintForClass(options.onClass, vocabulary));
        return EXIT_USAGE;
    }
    const ClassSet classesOfThis = vocabulary.findClasses({options.onClass});
    const NameCheckResult result = checkNames(expression, vocabulary, classesOfThis);
    return showFindings(result.findings, messages) ? EXIT_DONE : EXIT_EXPRESSION;
}

}  // namespace

int runCheck(const Options& options) {
    const ExpressionText text = readExpression(options);
    Messages messages(text, options, true);
    NamesOnDemand names(options);
    messages.setNames([&names] { return names.find(); });
    const CompiledExpression expression = compile(text, options.as, messages);
    if (!expression) {
        return EXIT_EXPRESSION;
    }
    // A bare attribute compiles without a word.
    if (messages.isEmpty()) {
        messages.showMessage(0, 0, messageSource, "Parse succeeded.", Messages::Info, false);
    }
    const bool knowsNames = !options.modelFile.empty() || !options.metamodelFile.empty();
    return knowsNames && !options.allowsUnknownNames ? checkNames(options, expression, messages)
                                                     : EXIT_DONE;
}

}  // namespace mmq
