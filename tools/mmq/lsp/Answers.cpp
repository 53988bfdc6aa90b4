#include "lsp/Answers.h"

#include <algorithm>
#include <optional>

#include "JsonWriter.h"
#include "assist/CursorContext.h"
#include "assist/TextMeaning.h"
#include "lsp/FunctionHelp.h"

namespace mmq {

namespace {

void addPosition(JsonWriter& json, const char* name, const Position& position) {
    json.beginObject(name);
    json.add("line", std::uint64_t{position.line});
    json.add("character", std::uint64_t{position.character});
    json.endObject();
}

void addRange(JsonWriter& json, const PositionRange& range) {
    json.beginObject("range");
    addPosition(json, "start", range.start);
    addPosition(json, "end", range.end);
    json.endObject();
}

PositionRange positionsOf(const Document& document, const TextRange& range) {
    return {document.position(range.offset), document.position(range.endOffset)};
}

void addRange(JsonWriter& json, const Document& document, const TextRange& range) {
    addRange(json, positionsOf(document, range));
}

TextRange inDocument(const ExpressionPart& part, const TextRange& range) {
    return {part.offsetInDocument(range.offset), part.offsetInDocument(range.endOffset)};
}

// ---------------------------------------------------------------- hover

std::string hoverText(const TypedPart& part, bool isMarkdown) {
    const std::string line = part.text + " : " + part.type;
    std::string text = isMarkdown ? "```mmq\n" + line + "\n```" : line;
    const bool isFunction = part.type.find(" -> ") != std::string::npos;
    const std::string help = isFunction ? functionHelp(part.text) : std::string();
    for (const std::string& more : {part.classes, help}) {
        text.append(more.empty() ? "" : "\n\n").append(more);
    }
    return text;
}

// ---------------------------------------------------------------- completion

// LSP 3.17, "CompletionItemKind".
std::uint64_t numberOf(CompletionKind kind) {
    switch (kind) {
        case CompletionKind::keyword:
            return 14;
        case CompletionKind::function:
            return 3;
        case CompletionKind::variable:
            return 6;
        case CompletionKind::label:
            return 18;
        case CompletionKind::attribute:
            return 5;
        case CompletionKind::association:
            return 10;
        case CompletionKind::className:
            return 7;
    }
    return 1;
}

/// Writes what may stand at one place of a document.
class CompletionWriter {
public:
    CompletionWriter(const DocumentView& view, std::size_t cursor, bool isColon)
        : view_(view), cursor_(cursor), isColon_(isColon) {}

    // Which names there are depends on what is written: the list is to be asked for again.
    std::string write() {
        json_.beginObject();
        json_.add("isIncomplete", true);
        json_.beginList("items");
        if (const auto part = view_.language.partAt(view_.document.text(), cursor_, view_.model)) {
            addItems(*part);
        }
        json_.endList();
        json_.endObject();
        return json_.text();
    }

private:
    void addItems(const ExpressionPart& part) {
        const std::size_t cursor = part.offsetInText(cursor_);
        const Completion completion = part.isClassName
                                          ? completeClass(part.text.substr(0, cursor), part.names)
                                          : complete(part.text, cursor, part.names);
        const bool isBegun = completion.offset < cursor;
        const PositionRange range =
            positionsOf(view_.document,
                        {isBegun ? part.offsetInDocument(completion.offset) : cursor_, cursor_});
        const std::string ending = endingOf(completion.closing, part);
        for (const CompletionItem& item : completion.items) {
            if (isFit(item, part)) {
                addItem(item, range, ending);
            }
        }
    }

    // What closes a name, unless it stands there, or the name goes on there.
    std::string endingOf(char closing, const ExpressionPart& part) const {
        const std::string& text = view_.document.text();
        const char next = cursor_ < text.size() ? text[cursor_] : '\n';
        const bool isMissing = closing != '\0' && next != closing && !isNameByte(next);
        return isMissing && !(part.isInYaml && closing == '"') ? std::string(1, closing) : "";
    }

    bool isFit(const CompletionItem& item, const ExpressionPart& part) const {
        const bool isPlain = item.text.find_first_of("'\"\\") == std::string::npos;
        const bool hasColon = item.kind == CompletionKind::association;
        return (isPlain || !part.isInYaml) && (hasColon || !isColon_);
    }

    void addItem(const CompletionItem& item, const PositionRange& range,
                 const std::string& ending) {
        json_.beginObject();
        json_.add("label", item.text);
        json_.add("kind", numberOf(item.kind));
        if (!item.detail.empty()) {
            json_.add("detail", item.detail);
        }
        json_.beginObject("textEdit");
        addRange(json_, range);
        json_.add("newText", item.text + ending);
        json_.endObject();
        json_.endObject();
    }

    const DocumentView& view_;
    std::size_t cursor_;
    bool isColon_;
    JsonWriter json_{JsonWriter::Layout::oneLine};
};

}  // namespace

std::string answerHover(const DocumentView& view, const Position& position, bool isMarkdown) {
    const std::size_t offset = view.document.offset(position);
    const auto part = view.language.partAt(view.document.text(), offset, view.model);
    if (!part || part->isClassName) {
        return "null";
    }
    const auto typed = TextMeaning(part->text).typeAt(part->offsetInText(offset), part->names);
    if (!typed) {
        return "null";
    }
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.beginObject("contents");
    json.add("kind", isMarkdown ? "markdown" : "plaintext");
    json.add("value", hoverText(*typed, isMarkdown));
    json.endObject();
    addRange(json, view.document, inDocument(*part, typed->range));
    json.endObject();
    return json.text();
}

std::string answerCompletion(const DocumentView& view, const Position& position, bool isColon) {
    return CompletionWriter(view, view.document.offset(position), isColon).write();
}

std::string answerDefinition(const DocumentView& view, const Position& position) {
    const std::size_t offset = view.document.offset(position);
    const auto part = view.language.partAt(view.document.text(), offset, view.model);
    const auto range = part && !part->isClassName
                           ? TextMeaning(part->text).definitionAt(part->offsetInText(offset))
                           : std::nullopt;
    if (!range) {
        return "null";
    }
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("uri", view.uri);
    addRange(json, view.document, inDocument(*part, *range));
    json.endObject();
    return json.text();
}

std::string diagnosticsOf(const DocumentView& view, const std::string& documentVersion) {
    constexpr std::uint64_t error = 1;
    constexpr std::uint64_t information = 3;
    const std::string name = view.uri.substr(view.uri.rfind('/') + 1);
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("uri", view.uri);
    if (!documentVersion.empty()) {
        json.addJson("version", documentVersion);
    }
    json.beginList("diagnostics");
    for (const Diagnostic& diagnostic :
         view.language.diagnose(name, view.document.text(), view.model)) {
        json.beginObject();
        addRange(json, view.document, {diagnostic.offset, diagnostic.endOffset});
        json.add("severity", diagnostic.isError ? error : information);
        if (!diagnostic.code.empty()) {
            json.add("code", diagnostic.code);
        }
        json.add("source", messageSource);
        json.add("message", diagnostic.message);
        json.endObject();
    }
    json.endList();
    json.endObject();
    return json.text();
}

}  // namespace mmq
