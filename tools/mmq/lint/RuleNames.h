// The names in rules, held against the models that are to be judged.
#pragma once

#include <memory>
#include <vector>

#include "lint/CompiledRules.h"
#include "names/NameVocabulary.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// Of which rules it is in order that no model has an object of their classes: of those that say
/// so, or where the models are but examples, of all.
enum class AbsentClasses { asRulesSay, allowed };

/// Looks at the classes of a rule and at every name in its expressions. Shows an error, at its
/// place in the rules file, for each class that there is not (but where the models' metamodel is
/// not known, that may be a class without objects), and for each name that no object of the models
/// can have. Returns false if there is one.
bool checkNames(const CompiledRule& rule, const NameVocabulary& vocabulary, MessageSink& sink,
                AbsentClasses absentClasses = AbsentClasses::asRulesSay);

/// The same for all rules and the names of some models, shown as the options say: a name is right
/// that one of the models knows.
bool checkNames(const std::vector<CompiledRule>& rules,
                const std::vector<std::unique_ptr<RepositoryModel>>& models, const Options& options,
                AbsentClasses absentClasses = AbsentClasses::asRulesSay);

}  // namespace mmq
