// The fields of comma-separated output, as RFC 4180 quotes them; lines end as text does here.
#pragma once

#include <string>

namespace mmq {

/// Quotes a field where it needs that.
std::string csvField(const std::string& text);

}  // namespace mmq
