// What the program tells its caller by its exit status.
#pragma once

namespace mmq {

enum ExitStatus : int {
    EXIT_DONE = 0,        ///< done, nothing to report
    EXIT_FINDINGS = 1,    ///< a condition is false for some object
    EXIT_USAGE = 2,       ///< the command line is wrong
    EXIT_EXPRESSION = 3,  ///< the expression does not compile
    EXIT_MODEL = 4,       ///< the model cannot be read
    EXIT_EVALUATION = 5   ///< an evaluation failed or reached a limit
};

}  // namespace mmq
