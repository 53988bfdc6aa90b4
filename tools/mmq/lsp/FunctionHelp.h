// What the guide to the language says of the built-in functions.
#pragma once

#include <string>

namespace mmq {

/// What a function does, a paragraph for each of its forms, in Markdown; empty where nothing is
/// said of it.
std::string functionHelp(const std::string& name);

}  // namespace mmq
