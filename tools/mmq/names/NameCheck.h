// Finds the names in an expression that no object can have.
#pragma once

#include "Compilation.h"
#include "Messages.h"
#include "names/NameJudge.h"
#include "names/NameVocabulary.h"

namespace mmq {

/// What came of looking at the names of one expression.
struct NameCheckResult {
    NameFindings findings;
    ClassSet yielded;  ///< the classes of the objects that the expression yields, if it yields some
};

/// Looks at every name of an attribute, an association or a class that stands as a constant in a
/// compiled expression, by the classes of the objects that it can be applied to as far as they are
/// known. `classesOfThis` are those of the objects that the expression is evaluated on; none of
/// them where that is not known.
NameCheckResult checkNames(const CompiledExpression& expression, const NameVocabulary& vocabulary,
                           const ClassSet& classesOfThis);

/// Tells of the names in an expression whose types were checked, whether they are right or wrong;
/// of all that the classes of are not known, they are taken to be any.
void receiveNames(SpecificationNode& root, const NameVocabulary& vocabulary,
                  const ClassSet& classesOfThis, NameReceiver& receiver);

/// Shows what was found. Returns false where there is an error.
bool showFindings(const NameFindings& findings, Messages& messages);

}  // namespace mmq
