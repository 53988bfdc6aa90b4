// Trying rules on the cases of their file.
#pragma once

#include <string>
#include <vector>

#include "lint/CompiledRules.h"
#include "lint/Report.h"

namespace mmq {

/// What became of one case.
struct CaseResult {
    std::vector<std::string> differences;  ///< sentences; none where the case passed
    std::vector<std::string> tried;        ///< rules that found what was expected of them
    bool hasFailedEvaluation = false;
};

/// Judges the model of a case by the rules that `sets` are compiled of, and compares
/// the findings with those expected. Suppressions play no part, nor does it matter that a small
/// model has nothing for a rule to judge. Throws ModelError, with a place in the rules file, where
/// the model cannot be read.
CaseResult runCase(const RuleCase& ruleCase, CompiledSets& sets, const Options& options);

}  // namespace mmq
