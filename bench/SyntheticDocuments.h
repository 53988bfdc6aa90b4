// The synthetic model as documents, one a reader.
#pragma once

#include <string>

#include "SyntheticModel.h"

namespace synthetic {

/// An XMI document of UML 2 as tools write it, about 4.7 KB a class.
std::string xmiDocument(const Model& model);

/// A JSON document of nested objects, with references as ids; only what the queries ask for.
std::string jsonDocument(const Model& model);

/// The elements of one package as a chunk of Lua that gives a table of each, references as ids, to
/// the function `element`; only what the queries ask for.
std::string luaChunk(const Package& package);

}  // namespace synthetic
