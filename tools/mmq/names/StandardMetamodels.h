// The metamodels that the program knows of itself.
#pragma once

#include <vector>

#include "repository/Metamodel.h"

namespace mmq {

enum class StandardMetamodel { uml, ecore };

/// The classes of UML 2.5 or Ecore with what each declares itself, and the names of the classes
/// that it inherits from. To UML belongs what its documents use of Ecore: annotations.
std::vector<MetamodelClass> standardClasses(StandardMetamodel metamodel);

}  // namespace mmq
