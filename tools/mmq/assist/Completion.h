// What may be written at a place of an expression.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "names/NameVocabulary.h"

namespace mmq {

enum class CompletionKind { keyword, function, variable, label, attribute, association, className };

/// A word or name that may stand at a place. As it is written in the text, escapes included.
struct CompletionItem {
    std::string text;
    CompletionKind kind;
    std::string detail = {};  ///< the type of a function or a variable, or empty
};

/// What may stand at a place, in the order of the alphabet, each once.
struct Completion {
    std::size_t offset = 0;  ///< where begins what is written of it already
    std::vector<CompletionItem> items;
    char closing = '\0';  ///< the character that is missing behind a name in quotes

    /// The items that begin with what is written already.
    std::vector<CompletionItem> matching(std::string_view written) const;
};

/// Where the names of objects come from.
struct NameSource {
    const NameVocabulary* vocabulary = nullptr;  ///< null where no model is known
    ClassSet classesOfThis = {};  ///< of what the expression is evaluated on; none if not known
};

/// Finds what may be written at a place of a text that need not be whole: the words that the
/// grammar takes there, the functions, the variables and labels in scope, and, where the name of a
/// feature or a class is begun, those of the objects that can be there. Names that the models show
/// come first: others are given only where none of those begins as what is written.
Completion complete(const std::string& text, std::size_t cursor, const NameSource& names);

/// Completes the name of a class in the same way; `written` is all that there is of it.
Completion completeClass(const std::string& written, const NameSource& names);

}  // namespace mmq
