// Why an expression has the value that it has: what decided, part by part.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ExpressionText.h"
#include "ast/SourceSpan.h"
#include "repository/RepositoryModel.h"
#include "why/PartEvaluator.h"
#include "why/PathTrace.h"

namespace mmq {

/// One thing that was found out about a part of the text.
struct EvidenceLine {
    enum class Kind {
        value,     ///< the part has this value
        binding,   ///< and has it because of `object`, which `variable` was: the first one
        elements,  ///< and has it because of all `objects`, or because there are none
        subject,   ///< what follows about the part is about `object`, which `variable` is
        path,      ///< the part reached the last object of `way` so
        step       ///< the part, a step of a path, reached the objects of the value
    };

    /// A line of the kind `value`.
    EvidenceLine(const SourceSpan& part, PartValue partValue)
        : span(part), value(std::move(partValue)) {}

    /// Makes it one of the kind `binding` or `subject`.
    void bind(Kind newKind, const std::string& name, MMObject bound) {
        kind = newKind;
        variable = name;
        object = bound;
    }

    /// Makes it one of the kind `elements`.
    void setElements(std::vector<MMObject> elements) {
        kind = Kind::elements;
        objects = std::move(elements);
    }

    Kind kind = Kind::value;
    SourceSpan span;
    PartValue value;       ///< of the kinds `subject` and `path`, the object
    std::string variable;  ///< "current" where the text has no other name for it
    MMObject object = mmNoObject;
    std::vector<MMObject> objects;
    PathWay way;
};

/// What decided the value of an expression for one object, from the whole to its parts. What
/// follows a binding and stands inside its part holds with the variable so bound, and so does what
/// follows a subject and is about its part or stands inside it.
struct Evidence {
    std::vector<EvidenceLine> lines;
    bool isCut = false;  ///< there was more than anybody would read, or a limit was reached
};

/// The evidence in lines of text that begin with `indent`: source lines, and what stands below a
/// part of them marked with "~", and with "^" where messages point.
std::string evidenceText(const Evidence& evidence, const ExpressionText& text,
                         const RepositoryModel& model, const std::string& indent);

/// The evidence as a JSON array of objects, with "line", "column" and "text" of the part and its
/// "value", where objects are their uids, or "error"; by kind also "variable" and "object",
/// "objects"; of a subject "variable" and "object" alone, of a path "path" alone, of a step
/// "reached". A long text ends in "...", and in a long list {"leftOut":COUNT} stands for what is
/// not shown. Evidence that was cut ends with {"isCut":true}.
std::string evidenceJson(const Evidence& evidence, const ExpressionText& text,
                         const RepositoryModel& model);

}  // namespace mmq
