#include "lsp/Protocol.h"

#include <rapidjson/error/en.h>

#include "Json.h"
#include "JsonWriter.h"

namespace mmq {

namespace {

std::string textOf(const JsonValue& value) { return {value.GetString(), value.GetStringLength()}; }

[[noreturn]] void refuse(const char* name, const char* what) {
    throw ResponseError(ErrorCode::invalidParams,
                        std::string("The parameter \"").append(name).append("\" is ").append(what));
}

JsonWriter beginMessage() {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("jsonrpc", "2.0");
    return json;
}

}  // namespace

// The parser that does not recurse.
rapidjson::Document parseJson(const std::string& content) {
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::Document document;
    document.Parse<flags>(content.data(), content.size());
    if (document.HasParseError()) {
        throw ResponseError(ErrorCode::parseError,
                            std::string("This is no JSON: ")
                                .append(rapidjson::GetParseError_En(document.GetParseError())));
    }
    return document;
}

const JsonValue* findMember(const JsonValue& value, const char* name) {
    if (!value.IsObject()) {
        return nullptr;
    }
    const auto member = value.FindMember(name);
    return member != value.MemberEnd() ? &member->value : nullptr;
}

const JsonValue& requireMember(const JsonValue& value, const char* name) {
    const JsonValue* const member = findMember(value, name);
    if (member == nullptr) {
        refuse(name, "missing.");
    }
    return *member;
}

std::string requireText(const JsonValue& value, const char* name) {
    const JsonValue& member = requireMember(value, name);
    if (!member.IsString()) {
        refuse(name, "no text.");
    }
    return textOf(member);
}

std::string optionalText(const JsonValue& value, const char* name) {
    const JsonValue* const member = findMember(value, name);
    return member != nullptr && member->IsString() ? textOf(*member) : std::string();
}

bool isScalar(const JsonValue& value) {
    return value.IsString() || value.IsInt64() || value.IsUint64();
}

std::string jsonOf(const JsonValue& scalar) {
    return scalar.IsString()  ? jsonString(textOf(scalar))
           : scalar.IsInt64() ? std::to_string(scalar.GetInt64())
                              : std::to_string(scalar.GetUint64());
}

std::string responseMessage(const std::string& id, const std::string& result) {
    JsonWriter json = beginMessage();
    json.addJson("id", id);
    json.addJson("result", result);
    json.endObject();
    return json.text();
}

std::string errorMessage(const std::string& id, ErrorCode code, const std::string& sentence) {
    JsonWriter json = beginMessage();
    json.addJson("id", id);
    json.beginObject("error");
    json.addJson("code", std::to_string(static_cast<int>(code)));
    json.add("message", sentence);
    json.endObject();
    json.endObject();
    return json.text();
}

std::string notificationMessage(const char* method, const std::string& parameters) {
    JsonWriter json = beginMessage();
    json.add("method", method);
    json.addJson("params", parameters);
    json.endObject();
    return json.text();
}

}  // namespace mmq
