// Steps that are written in a path but never followed.
#pragma once

#include <vector>

#include "ast/ASTNode.h"

namespace mmq {

/// The steps of all paths of an expression that evaluation never reaches, in the order of the text:
/// what follows a reference to a label, and what stands behind a reference in a group, up to the
/// end of the path. A step that can also be reached another way is not among them. The types of
/// the expression have been checked, so that references know their labels.
std::vector<const ASTNode*> findUnfollowedSteps(SpecificationNode& root);

}  // namespace mmq
