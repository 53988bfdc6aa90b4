// Advice for the compiler's messages about names that it does not know.
#pragma once

#include <string>

namespace mmq {

/// A line of advice for a message that a function, a variable or a label of an expression is not
/// there: those that may have been meant; for people, where there are none, how attributes are
/// written. Empty for other messages, and where there is none.
std::string hintForUnknownSymbol(const std::string& message, int line, int column,
                                 const std::string& text, bool isForPeople);

}  // namespace mmq
