// The short-cut for the simplest associated attributes.
#pragma once

#include <string>
#include <string_view>

#include "api/CompileDriver.h"

/// Compiles a text that consists of "$" and an identifier, with blanks (space, tab, line feed)
/// anywhere round them, into the access to that attribute: without lexer, parser, checker or
/// message. Any other text yields an empty pointer. Throws std::bad_alloc.
OrvCountedPtr<CompileResult> compileAttributeShortcut(const std::string& text);

/// The name that such a text consists of, or an empty view for any other text.
std::string_view findBareAttribute(std::string_view text);
