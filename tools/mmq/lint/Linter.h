// Judging models by all rules, with what rules files say about findings.
#pragma once

#include <memory>
#include <vector>

#include "lint/CompiledRules.h"
#include "lint/Report.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// Judges the models; adds what is to be told about rules that had nothing to judge and about
/// suppressions that suppress nothing, and marks what is suppressed. The sets are compiled of the
/// same rules, one for each thread that is to work, at least one.
Report lint(CompiledSets& sets, const std::vector<std::unique_ptr<RepositoryModel>>& models,
            const Options& options);

}  // namespace mmq
