// Values in JSON.
#pragma once

#include <string>
#include <string_view>

#include "fliodram/MMValue.h"

namespace mmq {

/// A text as a JSON string, with its quotes.
std::string jsonString(std::string_view text);

/// A value as JSON; what JSON has no number for is a string.
std::string jsonValue(const MMValue& value);

}  // namespace mmq
