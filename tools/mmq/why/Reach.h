// What the paths of an expression reached.
#pragma once

#include <vector>

#include "Compilation.h"
#include "fliodram/MMEvaluationContext.h"
#include "why/PathTrace.h"

namespace mmq {

/// The links that paths followed, whether or not what they reached belongs to the result.
struct Reach {
    bool hasPath = false;  ///< whether there was a path at all
    std::vector<MMObject> starts;
    std::vector<PathLink> links;
};

/// Follows the paths that the objects of the expression, which yields a collection, come from: the
/// expression itself, or what it filters, orders, traverses or chooses. Throws MMEvaluationError
/// when a limit is reached; what fails otherwise is left out.
Reach reachOf(const CompiledExpression& expression, MMEvaluationContext& context, MMObject object);

}  // namespace mmq
