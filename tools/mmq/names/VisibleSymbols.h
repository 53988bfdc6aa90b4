// The names that are known at a place of an expression.
#pragma once

#include <vector>

#include "namespace/NameSpace.h"

namespace mmq {

/// What the scope of a node and those around it declare of one kind, the inner ones first;
/// operators are left out. Nothing for a node that the name space does not know.
std::vector<Scope::Entry> visibleSymbols(const NameSpace& nameSpace, const ASTNode& node,
                                         SymbolKind kind);

}  // namespace mmq
