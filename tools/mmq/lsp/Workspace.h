// The documents that are open in an editor, and the model that they are about.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "Options.h"
#include "lsp/Answers.h"
#include "lsp/Document.h"
#include "lsp/Language.h"
#include "lsp/Protocol.h"
#include "lsp/ServerModel.h"

namespace mmq {

/// Takes what a client tells about its documents, and answers what it asks about them. Operations
/// take the parameters of the method that they are for, and throw ResponseError where these are
/// wrong. Belongs to one thread.
class Workspace {
public:
    /// Sends a message to the client.
    using Send = std::function<void(const std::string& message)>;

    /// Throws as ServerModel does where the model that the options name cannot be used.
    Workspace(const Options& options, Send send);

    /// Agrees with the client on positions, the form of texts, and the model, if it names one;
    /// where that cannot be used, the client is told. The result is what the server can do.
    std::string initialize(const JsonValue& parameters);

    void open(const JsonValue& parameters);
    void change(const JsonValue& parameters);
    void close(const JsonValue& parameters);

    std::string hover(const JsonValue& parameters);
    std::string complete(const JsonValue& parameters);
    std::string define(const JsonValue& parameters);

    /// Tells the client what is wrong in the documents that changed since the last time.
    void publish();

private:
    struct OpenDocument {
        Document document;
        const Language& language;
        std::string version = {};  // JSON, or empty
        bool isChanged = true;
    };
    using Documents = std::map<std::string, OpenDocument>;

    void useModel(const JsonValue& parameters);
    void setVersion(const JsonValue& identifier, OpenDocument& document) const;
    /// The document that parameters name; null where it is not open.
    Documents::value_type* find(const JsonValue& parameters);
    DocumentView viewOf(const Documents::value_type& entry) const;

    Options options_;
    Send send_;
    std::unique_ptr<ServerModel> model_;
    PositionEncoding encoding_ = PositionEncoding::utf16;
    bool usesMarkdown_ = false;
    Documents documents_;
};

}  // namespace mmq
