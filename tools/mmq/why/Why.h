// The explanation of results: which parts of an expression decided its value for an object.
#pragma once

#include "Compilation.h"
#include "fliodram/MMEvaluationContext.h"
#include "why/Evidence.h"

namespace mmq {

/// Evaluates the expression for the object once more, part by part, and gives the smallest evidence
/// for the value that it has:
///
/// - of a quantifier, the first counter-example or witness, what the body is for it, and how a path
///   reached it; or all objects, where no one decides;
/// - of a logical operation, the operands that decided; of a comparison, a call or arithmetic, what
///   the operands were; of an "if", the test and the branch that it chose;
/// - of an object that was taken from a path, the links that lead to it;
/// - of a collection, for each of its first objects how a path reached it, and why conditions let
///   it pass;
/// - of a failure, the part that fails, what its operands were, and for which object it fails.
///
/// Every value is what the evaluator gives for that part alone. The limits of the context hold for
/// each part; where one is reached, the evidence is cut. The context is as it was afterwards.
Evidence explain(const CompiledExpression& expression, MMEvaluationContext& context,
                 MMObject object);

/// The same for one object of the collection that the expression yields: how it came to be there.
/// Empty for an expression that yields a value.
Evidence explainElement(const CompiledExpression& expression, MMEvaluationContext& context,
                        MMObject object, MMObject element);

}  // namespace mmq
