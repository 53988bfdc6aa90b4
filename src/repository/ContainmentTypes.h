// The types of what objects contain in UML 2 and Ecore documents.
#pragma once

#include <string_view>

/// The declared type of a containment feature of UML 2 or Ecore, such as Operation for
/// ownedOperation; empty for a feature that neither has. The class of the owner matters where the
/// metamodel declares one name with several types: ownedEnd is a Property, below an Extension an
/// ExtensionEnd.
std::string_view containmentType(std::string_view owner, std::string_view feature);
