// Steps that are written in a path but never followed.
#pragma once

#include <vector>

#include "ast/ASTNode.h"

namespace mmq {

/// The steps of all paths of an expression that evaluation never reaches, in the order of the text:
/// what follows a reference to a label, and what stands behind a reference in a group. Of steps
/// that follow each other only the first is given. A step that can also be reached another way is
/// not among them.
std::vector<const ASTNode*> findUnfollowedSteps(SpecificationNode& root);

}  // namespace mmq
