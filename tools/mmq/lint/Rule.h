// What a rules file says: rules, and the cases that try them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ExpressionText.h"
#include "Options.h"
#include "SourceFile.h"
#include "lint/Severity.h"

namespace mmq {

/// A text of a rules file, with the place of each of its bytes.
struct LocatedText {
    std::string text;
    TextOrigin origin;

    TextPlace place() const { return origin.file->place(origin.offsets.front()); }
};

/// A piece of a message: a text as it is, or an expression whose value stands there.
struct MessagePiece {
    std::string text;
    std::optional<ExpressionText> expression;
};

/// A finding of a rule that is known to be right, and why.
struct Suppression {
    std::string element;  ///< uid or qualified path
    std::string reason;
    TextPlace place;
};

/// One rule, as it is written. Belongs to its file's list; never changes after reading.
struct Rule {
    std::string id;
    Severity severity = Severity::error;
    std::vector<LocatedText> classes;
    /// What must be true of each object; or, for a rule that finds, whose objects are the findings.
    std::optional<ExpressionText> expression;
    bool isFinding = false;  ///< true of a rule that finds
    std::vector<MessagePiece> message;
    std::string reason;
    std::string link;          ///< empty where there is none
    bool mayBeAbsent = false;  ///< whether it is in order that there is nothing to judge
    std::vector<Suppression> suppressions;
    std::shared_ptr<const SourceFile> file;
    TextPlace place;
};

/// A finding that a case expects.
struct ExpectedFinding {
    LocatedText rule;
    std::string element;                 ///< uid or qualified path
    std::optional<std::string> message;  ///< any, where there is none
    TextPlace place;
};

/// A small model, and what the rules find in it.
struct RuleCase {
    std::string name;
    LocatedText model;
    std::vector<LocatedText> rules;  ///< those that it is about; all that there are if empty
    std::vector<ExpectedFinding> findings;
    TextPlace place;
};

/// The content of one rules file. The cases may be about rules of other files.
struct RuleFile {
    std::shared_ptr<const SourceFile> source;
    std::vector<Rule> rules;
    std::vector<RuleCase> cases;
};

}  // namespace mmq
