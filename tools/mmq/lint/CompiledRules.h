// Rules that can be evaluated.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Compilation.h"
#include "fliodram/MMEvaluationError.h"
#include "lint/Rule.h"

namespace mmq {

/// A rule with its compiled expressions. Belongs to one thread at a time.
struct CompiledRule {
    const Rule* rule = nullptr;
    CompiledExpression expression;
    std::vector<CompiledExpression> message;  ///< of each piece; empty for those that are texts

    /// Compiles a rule, as far as all of it is there; goes on after an error, to tell of them all.
    /// Returns false where there is one.
    bool compile(const Rule& source, MessageSink& sink);

    /// The message for an object. Throws MMEvaluationError.
    std::string render(MMEvaluationContext& context, MMObject object) const;
    /// What an evaluation of the rule failed of, and where in the rules file, if that is known.
    std::string sentenceFor(const MMEvaluationError& error) const;
    /// The expression that failed: that of the rule, unless it was one of the message.
    const CompiledExpression& failingExpression(const MMEvaluationError& error) const;
    /// The text of one of its expressions.
    const ExpressionText& textOf(const CompiledExpression& part) const;
};

/// All rules of the files, in order.
std::vector<const Rule*> rulesOf(const std::vector<RuleFile>& files);

/// The same rules compiled several times, once for each thread.
using CompiledSets = std::vector<std::vector<CompiledRule>>;

/// Compiles rules into the first of so many sets, at least one. Shows what is wrong in any of
/// them, at its place in the rules file; the result is empty where anything is.
CompiledSets compileRules(const std::vector<const Rule*>& rules, std::size_t count,
                          const Options& options);

/// Compiles the rules of the first set into another, unless they are there: called by the thread
/// that is going to use it.
void completeSet(CompiledSets& sets, std::size_t number);

}  // namespace mmq
