// Numbers of things, as sentences give them.
#pragma once

#include <cstddef>
#include <string>

namespace mmq {

/// "1 object", "2 objects".
inline std::string counted(std::size_t count, const std::string& word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

}  // namespace mmq
