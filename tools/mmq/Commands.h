// The commands of the program.
#pragma once

#include "Options.h"

namespace mmq {

/// Each runs one command as the options say, writes its output to the standard output and its
/// messages to the standard error stream, and returns the exit status.
int runEval(const Options& options);
int runCheck(const Options& options);
int runLint(const Options& options);
int runTest(const Options& options);
int runDump(const Options& options);
int runInfo(const Options& options);
int runRepl(const Options& options);
int runLsp(const Options& options);
int runGenerate(const Options& options);

}  // namespace mmq
