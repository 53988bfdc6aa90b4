// Judging a model by rules.
#pragma once

#include <cstddef>
#include <vector>

#include "EvaluationBudget.h"
#include "lint/CompiledRules.h"
#include "lint/Report.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// The names from the outermost object down to this one, joined by "::"; an object without a name
/// is shown by its class in parentheses.
std::string qualifiedPath(const RepositoryModel& model, MMObject object);

/// Judges models, one after the other, looking at each object once with all rules of its class.
///
/// Made for one run, with one set of compiled rules for each thread that is to work.
class Judge {
public:
    /// Borrows the sets, all compiled of the same rules.
    Judge(CompiledSets& sets, const Options& options);

    /// Adds what the rules find in a model, in document order and then in that of the rules,
    /// whatever the number of threads.
    void judge(const RepositoryModel& model, std::vector<Finding>& findings);

    /// How many objects were looked at, of all models.
    std::size_t objectCount() const { return objectCount_; }
    /// Whether there was an object of a class of this rule.
    bool hasJudged(std::size_t rule) const { return hasJudged_[rule]; }

private:
    CompiledSets& sets_;
    bool explains_;
    EvaluationBudget budget_;
    std::size_t objectCount_ = 0;
    std::vector<bool> hasJudged_;
};

}  // namespace mmq
