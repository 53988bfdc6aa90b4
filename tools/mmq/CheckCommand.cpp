// mmq check: compiles an expression and shows what there is to say about it.
#include "Commands.h"
#include "Compilation.h"
#include "ExitStatus.h"

namespace mmq {

int runCheck(const Options& options) {
    const ExpressionText text = readExpression(options);
    Messages messages(text, options, true);
    if (!compile(text, options.as, messages)) {
        return EXIT_EXPRESSION;
    }
    // A bare attribute compiles without a word.
    if (messages.isEmpty()) {
        messages.showMessage(0, 0, messageSource, "Parse succeeded.", Messages::Info, false);
    }
    return EXIT_DONE;
}

}  // namespace mmq
