// Advice for the compiler's messages about names that it does not know.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ast/ExpressionNode.h"
#include "names/NameVocabulary.h"
#include "namespace/NameSpace.h"

namespace mmq {

/// Gives the names of the model at hand, when somebody asks; null where there is none.
using NamesAtHand = std::function<const NameVocabulary*()>;

/// Knows which names each place of one text can see. Parses the text when somebody first needs
/// that, once for all messages, which come while a compilation has the same text in memory.
///
/// Belongs to the messages about a text, which it borrows, and to their thread.
class SymbolHints {
public:
    explicit SymbolHints(const std::string& text) : text_(text) {}

    /// Lets advice name what is in the model at hand.
    void setNames(NamesAtHand names) { names_ = std::move(names); }

    /// A line of advice for a message that a function, a variable or a label of an expression is
    /// not there: those that may have been meant; of a variable also the attributes, associations
    /// and constants. For people, where there is no model and none of these is near, how attributes
    /// are written. Empty for other messages, and where there is none.
    std::string hintFor(const std::string& message, int line, int column, bool isForPeople);

private:
    std::vector<std::string> namesAt(int line, int column, SymbolKind kind);
    void parse();

    const std::string& text_;
    NamesAtHand names_;
    bool isParsed_ = false;
    OrvCountedPtr<SpecificationNode> root_;
    OrvCountedPtr<NameSpace> nameSpace_;
    std::vector<NameSpace::Entry> nodes_;  // by line and column
};

}  // namespace mmq
