// Numbers and texts in forms that no locale and no stream setting changes.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

/// Appends a whole number in decimal.
__attribute__((visibility("default"))) void appendInteger(std::string& text, long long value);

/// Appends the shortest text that reads back as the same number ("0.1", "2", "1e+300"); "inf",
/// "-inf" or "nan" for what is no finite number.
__attribute__((visibility("default"))) void appendReal(std::string& text, double value);

/// Appends a number with six significant digits, as a stream does that nobody has set up.
__attribute__((visibility("default"))) void appendRoundedReal(std::string& text, double value);

/// Appends a text as a JSON string with its quotes (RFC 8259). Bytes that are not UTF-8 become
/// U+FFFD.
__attribute__((visibility("default"))) void appendJsonString(std::string& text,
                                                             std::string_view content);

/// Writes texts to a stream whose width, flags and locale are left as they are.
__attribute__((visibility("default"))) void writeText(std::ostream& stream, std::string_view text);
