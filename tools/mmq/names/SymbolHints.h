// Advice for the compiler's messages about names that it does not know.
#pragma once

#include <functional>
#include <string>

#include "names/NameVocabulary.h"

namespace mmq {

/// Gives the names of the model at hand, when somebody asks; null where there is none.
using NamesAtHand = std::function<const NameVocabulary*()>;

/// A line of advice for a message that a function, a variable or a label of an expression is not
/// there: those that may have been meant; of a variable also the attributes, associations and
/// constants. For people, where there is no model and none of these is near, how attributes are
/// written. Empty for other messages, and where there is none.
std::string hintForUnknownSymbol(const std::string& message, int line, int column,
                                 const std::string& text, const NamesAtHand& names,
                                 bool isForPeople);

}  // namespace mmq
