// The messages of rules: texts with expressions in braces.
#pragma once

#include <vector>

#include "lint/FileErrors.h"
#include "lint/Rule.h"

namespace mmq {

/// Takes a message apart: `{EXPRESSION}` stands for the value of the expression on the element,
/// `{{` and `}}` for single braces. Adds an error where a brace has no partner or nothing in it.
std::vector<MessagePiece> parseMessage(const LocatedText& message, FileErrors& errors);

}  // namespace mmq
