#include "Json.h"

#include "foundation/TextOutput.h"

namespace mmq {

namespace {

bool isFinite(double number) {
    return number - number == 0.0;  // neither infinite nor NaN
}

}  // namespace

std::string jsonString(std::string_view text) {
    std::string json;
    appendJsonString(json, text);
    return json;
}

std::string jsonValue(const MMValue& value) {
    std::string buffer;
    const std::string_view text = value.asText(buffer);
    const bool isQuoted = value.getKind() == MMValue::Kind::text ||
                          (value.getKind() == MMValue::Kind::real && !isFinite(value.getReal()));
    return isQuoted ? jsonString(text) : std::string(text);
}

}  // namespace mmq
