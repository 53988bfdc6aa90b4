// Trying rules on the cases of their file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lint/CompiledRules.h"
#include "lint/Report.h"
#include "repository/ModelReader.h"

namespace mmq {

/// What became of one case.
struct CaseResult {
    std::vector<std::string> differences;  ///< sentences; none where the case passed
    std::vector<std::string> tried;        ///< rules that found what was expected of them
    bool hasFailedEvaluation = false;
};

/// Reads the model of a case. Throws ModelError, with a place in the rules file, where it cannot be
/// read.
std::unique_ptr<RepositoryModel> readModel(const RuleCase& ruleCase, const ReadOptions& options);

/// Judges the model of a case by the rules that `sets` are compiled of, and compares the findings
/// with those expected. Suppressions play no part, nor does it matter that a small model has
/// nothing for a rule to judge.
CaseResult runCase(const RuleCase& ruleCase, const RepositoryModel& model, CompiledSets& sets,
                   const Options& options);

}  // namespace mmq
