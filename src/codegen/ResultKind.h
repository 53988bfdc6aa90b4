// Which kind of target expression an expression of some type becomes.
#pragma once

#include "types/TypeExpression.h"

enum class ResultKind { value, object, objectCollection, stringCollection, none };

/// A string, number or boolean becomes a value; types that no expression of the target has give
/// none.
ResultKind resultKindOf(const TypePtr& type);
