// Texts of models and rules in forms that nothing in them can break out of.
#pragma once

#include <string>
#include <string_view>

namespace mmq {

/// The text with U+FFFD for every byte that is not part of well-formed UTF-8.
std::string wellFormed(std::string_view text);
/// A well-formed text on one line and without effect on a terminal: control characters become
/// escapes such as \n or \x1b.
std::string onOneLine(std::string_view text);
/// A well-formed text as content or as an attribute in double quotes of XML and HTML; characters
/// that XML does not know become U+FFFD.
std::string xmlText(std::string_view text);

}  // namespace mmq
