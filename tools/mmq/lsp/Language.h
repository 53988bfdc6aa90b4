// The kinds of files that hold expressions.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "lsp/Diagnostics.h"
#include "lsp/ServerModel.h"

namespace mmq {

/// One expression of a document: its text, where in the document that stands, and the names that it
/// can use; or in its place the name of a class. A plain value.
struct ExpressionPart {
    std::string text;
    std::vector<std::size_t> offsets;  ///< in the document, of each byte and of the end
    NameSource names;
    bool isClassName = false;
    bool isInYaml = false;  ///< where quotes and backslashes may have to be written in another way

    /// The part that some bytes of a document are.
    static ExpressionPart cut(const std::string& document, std::size_t begin, std::size_t end,
                              const NameSource& names);

    std::size_t offsetInDocument(std::size_t offset) const { return offsets[offset]; }
    /// The first byte of the text that stands at a place of the document, or behind it.
    std::size_t offsetInText(std::size_t offset) const;
};

/// Knows what is wrong in files of one kind, and where their expressions are. Has no state; there
/// is one of each kind.
class Language {
public:
    Language() = default;
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    virtual ~Language() = default;

    /// What is wrong in a document; messages call it `name`.
    virtual std::vector<Diagnostic> diagnose(const std::string& name, const std::string& text,
                                             const ServerModel& model) const = 0;
    /// The expression at a place of a document, whole or not; nothing where there is none.
    virtual std::optional<ExpressionPart> partAt(const std::string& text, std::size_t offset,
                                                 const ServerModel& model) const = 0;
};

/// Files that consist of one expression.
const Language& expressionLanguage();
/// Files of rules.
const Language& rulesLanguage();

/// The language of a document by the name that the editor gives it, or by the name of its file.
const Language& findLanguage(const std::string& languageId, const std::string& uri);

}  // namespace mmq
