// Reading files of text.
#pragma once

#include <string>

namespace mmq {

/// The bytes of a file; those of the standard input for "-". Throws std::runtime_error where it
/// cannot be read or has more than 256 MiB, with a sentence about `what`, such as "The expression".
std::string readTextFile(const std::string& path, const std::string& what);

}  // namespace mmq
