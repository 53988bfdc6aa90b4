// What a prompt tells about a model.
#pragma once

#include <string>

#include "ModelNames.h"

namespace mmq {

/// The classes that have objects, with their numbers, a line each; of a metamodel alone, its
/// classes. There is a vocabulary.
std::string listClasses(const ModelNames& names);

/// The attributes and associations that objects of a class have, and which classes these reach in
/// the model; for a class without objects, those that objects of it may have. There is a
/// vocabulary, which knows the class.
std::string describeClass(const std::string& name, const ModelNames& names);

}  // namespace mmq
