// An evaluator of expressions that shares nothing with the compiler but the syntax tree: the
// reference against which compiled expressions are held.
#pragma once

#include <vector>

#include "ast/ASTNode.h"
#include "evaluation/NaiveValue.h"

/// The value for `object` of an expression that compiles, over the objects of a model in its order.
/// Throws NaiveFailure where there is none, and NaiveRefusal.
NaiveValue evaluateNaively(const std::vector<Thing>& things, SpecificationNode& tree,
                           const Thing& object);
