// Comma-separated output.
#include "Csv.h"

namespace mmq {

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string field = "\"";
    for (const char byte : text) {
        field += byte;
        field += byte == '"' ? "\"" : "";
    }
    return field + "\"";
}

}  // namespace mmq
