// The names in rules, held against the models that are to be judged.
#pragma once

#include <memory>
#include <vector>

#include "lint/CompiledRules.h"
#include "names/NameVocabulary.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// Looks at the classes of a rule and at every name in its expressions. Shows an error, at its
/// place in the rules file, for each class that there is not (but where the models' metamodel is
/// not known, a rule that says so may be for a class without objects), and for each name that no
/// object of the models can have. Returns false if there is one.
bool checkNames(const CompiledRule& rule, const NameVocabulary& vocabulary, MessageSink& sink);

/// The same for all rules and the names of some models, shown as the options say.
bool checkNames(const std::vector<CompiledRule>& rules,
                const std::vector<std::unique_ptr<RepositoryModel>>& models,
                const Options& options);

}  // namespace mmq
