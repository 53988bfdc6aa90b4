// What editors ask about a place of a document, and what they are told: the JSON of LSP 3.17,
// "Language Features".
#pragma once

#include <string>

#include "lsp/Document.h"
#include "lsp/Language.h"
#include "lsp/ServerModel.h"

namespace mmq {

/// A document that is open, with what is needed to look at it. Borrows everything.
struct DocumentView {
    const std::string& uri;
    const Document& document;
    const Language& language;
    const ServerModel& model;
};

/// The type of the expression at a place, and what is known of a name or a function there; "null"
/// where there is nothing to tell.
std::string answerHover(const DocumentView& view, const Position& position, bool isMarkdown);

/// What may be written at a place. With `isColon`, only what a colon is part of: a client asks of
/// its own accord behind each.
std::string answerCompletion(const DocumentView& view, const Position& position, bool isColon);

/// Where the variable or the label at a place is declared; "null" where there is none.
std::string answerDefinition(const DocumentView& view, const Position& position);

/// The parameters that tell what is wrong in a document. `documentVersion` is JSON, or empty.
std::string diagnosticsOf(const DocumentView& view, const std::string& documentVersion);

}  // namespace mmq
