// Finding the parts of an analysed expression by where they stand in its text.
#pragma once

#include <cstddef>
#include <optional>

#include "names/NameVocabulary.h"
#include "namespace/NameSpace.h"

namespace mmq {

/// The smallest part of an expression, or the smallest of those that pass a test, that holds a byte
/// of its text; null where none does.
using NodeTest = bool (*)(const ASTNode&);
ASTNode* findInnermost(const NameSpace& nameSpace, std::size_t offset, NodeTest test = nullptr);

/// The name of an attribute or an association, where it is used.
struct NameUse {
    std::string name;
    ReadAs kind;
    ClassSet classes;  ///< of the objects that it is applied to
};

/// The name whose place in the text begins with a byte, in an expression whose types were checked.
std::optional<NameUse> findNameUse(SpecificationNode& root, std::size_t offset,
                                   const NameVocabulary& vocabulary, const ClassSet& classesOfThis);

}  // namespace mmq
