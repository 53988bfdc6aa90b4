// mmq check: compiles an expression and shows what there is to say about it.
#include "Commands.h"
#include "Compilation.h"
#include "ExitStatus.h"

namespace mmq {

int runCheck(const Options& options) {
    const ExpressionText text = readExpression(options);
    Messages messages(text, options, true);
    return compile(text, options.as, messages) ? EXIT_DONE : EXIT_EXPRESSION;
}

}  // namespace mmq
