// mmq: asks models questions in a typed query language.
#include <clocale>
#include <iostream>
#include <memory>
#include <new>
#include <string_view>

#include "Commands.h"
#include "ExitStatus.h"
#include "Options.h"
#include "Pager.h"
#include "repository/ModelError.h"

namespace {

int run(const mmq::Options& options) {
    switch (options.command) {
        case mmq::Command::eval:
            return mmq::runEval(options);
        case mmq::Command::check:
            return mmq::runCheck(options);
        case mmq::Command::lint:
            return mmq::runLint(options);
        case mmq::Command::test:
            return mmq::runTest(options);
        case mmq::Command::dump:
            return mmq::runDump(options);
        case mmq::Command::info:
            return mmq::runInfo(options);
        case mmq::Command::repl:
            return mmq::runRepl(options);
        case mmq::Command::lsp:
            return mmq::runLsp(options);
        case mmq::Command::generate:
            return mmq::runGenerate(options);
    }
    return mmq::EXIT_USAGE;
}

// Whether the command writes text for people, of any length, and reads nothing meanwhile.
bool isPaged(const mmq::Options& options) {
    return options.command != mmq::Command::generate && options.command != mmq::Command::check &&
           options.command != mmq::Command::repl && options.command != mmq::Command::lsp;
}

// The help of one command is about a page.
bool asksForAllHelp(int argumentCount, char** arguments) {
    return argumentCount == 2 && std::string_view(arguments[1]) == "--help-all";
}

// Runs the command; what goes wrong outside an evaluation is a sentence and a status.
int runGuarded(const mmq::Options& options) {
    try {
        return run(options);
    } catch (const ModelError& error) {
        std::cerr << "mmq: " << error.what() << '\n';
        return mmq::EXIT_MODEL;
    } catch (const std::bad_alloc&) {
        std::cerr << "mmq: There is not enough memory.\n";
        return mmq::EXIT_EVALUATION;
    } catch (const OrvException& error) {
        std::cerr << "mmq: " << error.what() << '\n';
        return mmq::EXIT_EVALUATION;
    } catch (const std::exception& error) {
        std::cerr << "mmq: " << error.what() << '\n';
        return mmq::EXIT_USAGE;
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // Only for the width of characters; numbers are never read or written by the locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    std::ios::sync_with_stdio(false);
    std::unique_ptr<mmq::Pager> pager;
    if (asksForAllHelp(argumentCount, arguments) && mmq::Pager::isWanted()) {
        pager = std::make_unique<mmq::Pager>(std::cout);
    }
    const mmq::ParsedCommandLine parsed = mmq::parseCommandLine(argumentCount, arguments);
    if (!parsed.exitStatus && isPaged(parsed.options) && mmq::Pager::isWanted()) {
        pager = std::make_unique<mmq::Pager>(std::cout);
    }
    const int status = parsed.exitStatus ? *parsed.exitStatus : runGuarded(parsed.options);
    std::cout.flush();
    pager.reset();
    if (!std::cout) {
        std::cerr << "mmq: The output could not be written.\n";
        return status != mmq::EXIT_DONE ? status : mmq::EXIT_EVALUATION;
    }
    return status;
}
