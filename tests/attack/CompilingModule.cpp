// A module that a test loads and unloads: a host's plug-in that compiles.
#include <thread>

#include "api/ExprParser.h"
#include "api/ExprParserDefaultWindowsDialogs.h"

extern "C" __attribute__((visibility("default"))) int compileTexts();

/// Compiles an expression that is right and one that is not, on a thread of its own, too. Returns
/// how many compiled.
int compileTexts() {
    int compiled = 0;
    const auto compile = [&compiled] {
        ExprParserDefaultWindowsDialogs dialogs;
        for (const char* text :
             {"size (a:[a] -> @a) > 2 or opSig this = $x + 1.5", "$name = \"x\""}) {
            compiled += ExprParser::parseCondition(dialogs, text) ? 1 : 0;
        }
    };
    compile();
    std::thread(compile).join();
    return compiled;
}
