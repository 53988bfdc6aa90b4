// The server's side of a conversation in the Language Server Protocol (LSP 3.17, "Server
// lifecycle").
#pragma once

#include <optional>
#include <string>

#include "lsp/MessageChannel.h"
#include "lsp/Protocol.h"
#include "lsp/Workspace.h"

namespace mmq {

/// Reads requests and notifications until the client says that it is over, and has the workspace
/// do what they ask. Whatever is wrong with one is answered with an error, and the next one read.
/// Borrows the channel. Belongs to one thread.
class Server {
public:
    /// Throws as Workspace does.
    Server(const Options& options, MessageChannel& channel);

    /// Runs the conversation. Returns the exit status that the protocol wants.
    int run();

private:
    enum class State { fresh, running, down };

    void receive(const std::string& content);
    void take(const JsonValue& message);
    void answer(const std::string& id, const std::string& method, const JsonValue& parameters);
    std::string resultOf(const std::string& method, const JsonValue& parameters);
    void notice(const std::string& method, const JsonValue& parameters);
    void refuse(const std::string& id, ErrorCode code, const std::string& sentence);

    MessageChannel& channel_;
    Workspace workspace_;
    State state_ = State::fresh;
    bool isOver_ = false;
};

}  // namespace mmq
