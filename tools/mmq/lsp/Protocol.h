// The parts of JSON-RPC 2.0 that the Language Server Protocol (LSP 3.17) is made of.
#pragma once

#include <rapidjson/document.h>

#include <stdexcept>
#include <string>

namespace mmq {

/// What a request is refused with, by the numbers of JSON-RPC 2.0 and of LSP 3.17.
enum class ErrorCode {
    parseError = -32700,
    invalidRequest = -32600,
    methodNotFound = -32601,
    invalidParams = -32602,
    internalError = -32603,
    serverNotInitialized = -32002
};

/// Thrown where a request cannot be answered; becomes the answer to it.
class ResponseError : public std::runtime_error {
public:
    ResponseError(ErrorCode code, const std::string& sentence)
        : std::runtime_error(sentence), code_(code) {}
    ErrorCode code() const { return code_; }

private:
    ErrorCode code_;
};

using JsonValue = rapidjson::Value;

/// Reads the content of a message, which may be nested as deep as anybody likes. Throws
/// ResponseError where it is no JSON.
rapidjson::Document parseJson(const std::string& content);

/// The member of an object, or null where there is none, or where the value is no object.
const JsonValue* findMember(const JsonValue& value, const char* name);
/// The member of a member, and so on.
template <class... Names>
const JsonValue* findMember(const JsonValue& value, const char* name, Names... names) {
    const JsonValue* const member = findMember(value, name);
    return member != nullptr ? findMember(*member, names...) : nullptr;
}

/// Members that have to be there; these throw ResponseError where they are not, or are of another
/// kind.
const JsonValue& requireMember(const JsonValue& value, const char* name);
std::string requireText(const JsonValue& value, const char* name);

/// A text that may be absent, which is empty then.
std::string optionalText(const JsonValue& value, const char* name);

/// Whether a value is a whole number or a text, as ids and versions are; and its JSON.
bool isScalar(const JsonValue& value);
std::string jsonOf(const JsonValue& scalar);

/// Messages to the client. `result` and `parameters` are JSON.
std::string responseMessage(const std::string& id, const std::string& result);
std::string errorMessage(const std::string& id, ErrorCode code, const std::string& sentence);
std::string notificationMessage(const char* method, const std::string& parameters);

}  // namespace mmq
