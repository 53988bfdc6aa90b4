// The measured queries in the product's own language.
#pragma once

#include <string>

/// The text of a query of QueryEngine, to be evaluated on the root of the model, or, of signatures,
/// on each operation; throws std::out_of_range for an unknown name.
const std::string& productQuery(const std::string& name);

/// Whether that query is one for objects, to be compiled as a complex association; else it is for
/// a value.
bool isObjectQuery(const std::string& name);

/// The condition of QueryEngine.
inline constexpr const char* productCondition = "$visibility = \"public\"";
