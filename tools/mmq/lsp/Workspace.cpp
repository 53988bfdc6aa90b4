#include "lsp/Workspace.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <filesystem>
#include <utility>

#include "JsonWriter.h"
#include "Version.h"

namespace mmq {

namespace {

// The path that a URI of a file means.
std::string pathOf(const std::string& uri) {
    constexpr std::string_view scheme = "file://";
    std::string path;
    for (std::size_t at = uri.rfind(scheme, 0) == 0 ? scheme.size() : 0; at < uri.size(); ++at) {
        unsigned byte = 0;
        const char* const digits = uri.data() + at + 1;
        const bool isEscape = uri[at] == '%' && at + 2 < uri.size() &&
                              std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        path.push_back(isEscape ? static_cast<char>(byte) : uri[at]);
        at += isEscape ? 2 : 0;
    }
    return path;
}

// A file that a client names, seen from the folder that it works in.
std::string fileIn(const JsonValue& parameters, const std::string& file) {
    const std::string root = optionalText(parameters, "rootUri");
    return file.empty() || root.empty() ? file
                                        : (std::filesystem::path(pathOf(root)) / file).string();
}

bool holdsText(const JsonValue* list, const char* text) {
    return list != nullptr && list->IsArray() &&
           std::any_of(list->Begin(), list->End(), [text](const JsonValue& element) {
               return element.IsString() && element == text;
           });
}

std::uint32_t numberOf(const JsonValue& value, const char* name) {
    const JsonValue& number = requireMember(value, name);
    if (!number.IsUint()) {
        throw ResponseError(
            ErrorCode::invalidParams,
            std::string("The parameter \"").append(name).append("\" is no number from zero."));
    }
    return number.GetUint();
}

Position positionOf(const JsonValue& value) {
    return {numberOf(value, "line"), numberOf(value, "character")};
}

Position positionIn(const JsonValue& parameters) {
    return positionOf(requireMember(parameters, "position"));
}

std::optional<PositionRange> rangeIn(const JsonValue& change) {
    const JsonValue* const range = findMember(change, "range");
    if (range == nullptr) {
        return {};
    }
    return PositionRange{positionOf(requireMember(*range, "start")),
                         positionOf(requireMember(*range, "end"))};
}

std::string capabilities(PositionEncoding encoding) {
    constexpr std::uint64_t incremental = 2;
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.beginObject("capabilities");
    json.add("positionEncoding", encoding == PositionEncoding::utf8 ? "utf-8" : "utf-16");
    json.beginObject("textDocumentSync");
    json.add("openClose", true);
    json.add("change", incremental);
    json.endObject();
    json.add("hoverProvider", true);
    json.beginObject("completionProvider");
    json.addJson("triggerCharacters", R"(["$","[","\"","@",":"])");
    json.endObject();
    json.add("definitionProvider", true);
    json.endObject();
    json.beginObject("serverInfo");
    json.add("name", "mmq");
    json.add("version", version);
    json.endObject();
    json.endObject();
    return json.text();
}

std::string errorToShow(const std::string& sentence) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("type", std::uint64_t{1});
    json.add("message", "mmq: " + sentence);
    json.endObject();
    return notificationMessage("window/showMessage", json.text());
}

}  // namespace

Workspace::Workspace(const Options& options, Send send)
    : options_(options), send_(std::move(send)), model_(std::make_unique<ServerModel>(options_)) {}

std::string Workspace::initialize(const JsonValue& parameters) {
    if (holdsText(findMember(parameters, "capabilities", "general", "positionEncodings"),
                  "utf-8")) {
        encoding_ = PositionEncoding::utf8;
    }
    usesMarkdown_ =
        holdsText(findMember(parameters, "capabilities", "textDocument", "hover", "contentFormat"),
                  "markdown");
    useModel(parameters);
    return capabilities(encoding_);
}

void Workspace::useModel(const JsonValue& parameters) {
    const JsonValue* const wishes = findMember(parameters, "initializationOptions");
    for (const char* const name : {"model", "metamodel", "on"}) {
        const JsonValue* const wish = findMember(parameters, "initializationOptions", name);
        if (wish != nullptr && !wish->IsString() && !wish->IsNull()) {
            send_(errorToShow(
                std::string("The initialization option \"").append(name).append("\" is no text.")));
        }
    }
    const std::string model = wishes != nullptr ? optionalText(*wishes, "model") : "";
    const std::string metamodel = wishes != nullptr ? optionalText(*wishes, "metamodel") : "";
    if (model.empty() && metamodel.empty()) {
        return;
    }
    Options options = options_;
    options.modelFile = fileIn(parameters, model);
    options.metamodelFile = fileIn(parameters, metamodel);
    options.onClass = optionalText(*wishes, "on");
    try {
        model_ = std::make_unique<ServerModel>(options);
    } catch (const std::exception& error) {
        send_(errorToShow(error.what()));
    }
}

// ---------------------------------------------------------------- documents

void Workspace::setVersion(const JsonValue& identifier, OpenDocument& document) const {
    const JsonValue* const number = findMember(identifier, "version");
    document.version = number != nullptr && number->IsInt64() ? jsonOf(*number) : "";
}

void Workspace::open(const JsonValue& parameters) {
    const JsonValue& item = requireMember(parameters, "textDocument");
    const std::string uri = requireText(item, "uri");
    OpenDocument document{Document(requireText(item, "text"), encoding_),
                          findLanguage(optionalText(item, "languageId"), uri)};
    setVersion(item, document);
    documents_.erase(uri);
    documents_.emplace(uri, std::move(document));
}

void Workspace::change(const JsonValue& parameters) {
    Documents::value_type* const entry = find(parameters);
    const JsonValue& changes = requireMember(parameters, "contentChanges");
    if (entry == nullptr || !changes.IsArray()) {
        return;
    }
    OpenDocument& document = entry->second;
    document.isChanged = true;
    setVersion(requireMember(parameters, "textDocument"), document);
    for (const JsonValue& change : changes.GetArray()) {
        const std::string text = requireText(change, "text");
        document.document.change(rangeIn(change), text);
    }
}

void Workspace::close(const JsonValue& parameters) {
    const Documents::value_type* const entry = find(parameters);
    if (entry != nullptr) {
        const std::string uri = entry->first;
        documents_.erase(uri);
        JsonWriter json(JsonWriter::Layout::oneLine);
        json.beginObject();
        json.add("uri", uri);
        json.addJson("diagnostics", "[]");
        json.endObject();
        send_(notificationMessage("textDocument/publishDiagnostics", json.text()));
    }
}

Workspace::Documents::value_type* Workspace::find(const JsonValue& parameters) {
    const auto found =
        documents_.find(requireText(requireMember(parameters, "textDocument"), "uri"));
    return found != documents_.end() ? &*found : nullptr;
}

DocumentView Workspace::viewOf(const Documents::value_type& entry) const {
    return {entry.first, entry.second.document, entry.second.language, *model_};
}

void Workspace::publish() {
    for (Documents::value_type& entry : documents_) {
        if (!std::exchange(entry.second.isChanged, false)) {
            continue;
        }
        try {
            send_(notificationMessage("textDocument/publishDiagnostics",
                                      diagnosticsOf(viewOf(entry), entry.second.version)));
        } catch (const std::exception& error) {
            send_(errorToShow(error.what()));
        }
    }
}

// ---------------------------------------------------------------- questions

std::string Workspace::hover(const JsonValue& parameters) {
    const Documents::value_type* const entry = find(parameters);
    const Position position = positionIn(parameters);
    return entry != nullptr ? answerHover(viewOf(*entry), position, usesMarkdown_) : "null";
}

std::string Workspace::complete(const JsonValue& parameters) {
    const Documents::value_type* const entry = find(parameters);
    const Position position = positionIn(parameters);
    const JsonValue* const trigger = findMember(parameters, "context", "triggerCharacter");
    const bool isColon = trigger != nullptr && trigger->IsString() && *trigger == ":";
    return entry != nullptr ? answerCompletion(viewOf(*entry), position, isColon) : "null";
}

std::string Workspace::define(const JsonValue& parameters) {
    const Documents::value_type* const entry = find(parameters);
    const Position position = positionIn(parameters);
    return entry != nullptr ? answerDefinition(viewOf(*entry), position) : "null";
}

}  // namespace mmq
