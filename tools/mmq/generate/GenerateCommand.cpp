// mmq generate: the manual page and the completions of shells, from the command line itself.
#include <iostream>

#include "Commands.h"
#include "ExitStatus.h"
#include "generate/ProgramDescription.h"

namespace mmq {

int runGenerate(const Options& options) {
    const ProgramDescription description = describeProgram();
    switch (options.generated) {
        case Generated::man:
            std::cout << manualPage(description);
            break;
        case Generated::bash:
            std::cout << bashCompletion(description);
            break;
        case Generated::zsh:
            std::cout << zshCompletion(description);
            break;
        case Generated::fish:
            std::cout << fishCompletion(description);
    }
    return EXIT_DONE;
}

}  // namespace mmq
