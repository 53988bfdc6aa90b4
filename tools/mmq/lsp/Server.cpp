#include "lsp/Server.h"

#include <exception>
#include <map>

#include "ExitStatus.h"

namespace mmq {

namespace {

constexpr const char* noId = "null";
constexpr int statusWithoutShutdown = 1;

using Question = std::string (Workspace::*)(const JsonValue& parameters);
using Notice = void (Workspace::*)(const JsonValue& parameters);

Question findQuestion(const std::string& method) {
    static const std::map<std::string, Question> questions = {
        {"textDocument/hover", &Workspace::hover},
        {"textDocument/completion", &Workspace::complete},
        {"textDocument/definition", &Workspace::define}};
    const auto found = questions.find(method);
    return found != questions.end() ? found->second : nullptr;
}

Notice findNotice(const std::string& method) {
    static const std::map<std::string, Notice> notices = {
        {"textDocument/didOpen", &Workspace::open},
        {"textDocument/didChange", &Workspace::change},
        {"textDocument/didClose", &Workspace::close}};
    const auto found = notices.find(method);
    return found != notices.end() ? found->second : nullptr;
}

}  // namespace

Server::Server(const Options& options, MessageChannel& channel)
    : channel_(channel),
      workspace_(options, [&channel](const std::string& message) { channel.write(message); }) {}

// While the client goes on talking, what is wrong in its documents is about to change.
int Server::run() {
    std::string content;
    while (!isOver_) {
        const MessageChannel::Outcome outcome = channel_.read(content);
        if (outcome == MessageChannel::Outcome::end) {
            break;
        }
        if (outcome == MessageChannel::Outcome::malformed) {
            refuse(noId, ErrorCode::parseError,
                   "A message begins with \"Content-Length: \" and a number of bytes that is not "
                   "too large.");
        } else {
            receive(content);
        }
        if (!channel_.hasMore()) {
            workspace_.publish();
        }
    }
    return state_ == State::down ? EXIT_DONE : statusWithoutShutdown;
}

void Server::receive(const std::string& content) {
    try {
        take(parseJson(content));
    } catch (const ResponseError& error) {
        refuse(noId, error.code(), error.what());
    } catch (const std::exception& error) {
        refuse(noId, ErrorCode::internalError, error.what());
    }
}

void Server::take(const JsonValue& message) {
    static const JsonValue nothing;
    const JsonValue* const id = findMember(message, "id");
    const JsonValue* const method = findMember(message, "method");
    const JsonValue* const parameters = findMember(message, "params");
    const bool isIdentified = id != nullptr && isScalar(*id);
    if (method == nullptr &&
        (findMember(message, "result") != nullptr || findMember(message, "error") != nullptr)) {
        return;  // an answer, though nothing was asked
    }
    if (method == nullptr || !method->IsString() || (id != nullptr && !isIdentified)) {
        refuse(isIdentified ? jsonOf(*id) : noId, ErrorCode::invalidRequest,
               "A message is an object with a method, and with an id if it is a request.");
        return;
    }
    const std::string name(method->GetString(), method->GetStringLength());
    const JsonValue& given = parameters != nullptr ? *parameters : nothing;
    if (isIdentified) {
        answer(jsonOf(*id), name, given);
    } else {
        notice(name, given);
    }
}

void Server::answer(const std::string& id, const std::string& method, const JsonValue& parameters) {
    try {
        channel_.write(responseMessage(id, resultOf(method, parameters)));
    } catch (const ResponseError& error) {
        refuse(id, error.code(), error.what());
    } catch (const std::exception& error) {
        refuse(id, ErrorCode::internalError, error.what());
    }
}

std::string Server::resultOf(const std::string& method, const JsonValue& parameters) {
    if (state_ == State::fresh && method != "initialize") {
        throw ResponseError(ErrorCode::serverNotInitialized,
                            "The first request is \"initialize\".");
    }
    if (state_ == State::down || (state_ == State::running && method == "initialize")) {
        throw ResponseError(ErrorCode::invalidRequest, state_ == State::down
                                                           ? "The server was shut down."
                                                           : "The server is initialized already.");
    }
    if (method == "initialize") {
        state_ = State::running;
        return workspace_.initialize(parameters);
    }
    if (method == "shutdown") {
        workspace_.publish();
        state_ = State::down;
        return "null";
    }
    const Question question = findQuestion(method);
    if (question == nullptr) {
        throw ResponseError(ErrorCode::methodNotFound, "There is no method \"" + method + "\".");
    }
    return (workspace_.*question)(parameters);
}

// Nobody waits for an answer to a notification: one that is not known or wrong is passed over.
void Server::notice(const std::string& method, const JsonValue& parameters) {
    isOver_ = method == "exit";
    const Notice known = findNotice(method);
    if (state_ == State::running && known != nullptr) {
        try {
            (workspace_.*known)(parameters);
        } catch (const ResponseError&) {
            return;
        }
    }
}

void Server::refuse(const std::string& id, ErrorCode code, const std::string& sentence) {
    channel_.write(errorMessage(id, code, sentence));
}

}  // namespace mmq
