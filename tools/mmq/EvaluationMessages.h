// The failures of evaluations, shown in the text of the expression.
#pragma once

#include <string>

#include "ExpressionText.h"
#include "Messages.h"
#include "codegen/SourceMap.h"
#include "fliodram/MMEvaluationError.h"

namespace mmq {

/// Where in the text the operation stands that failed. No place (a line of 0) where that is not
/// known: a limit on the whole evaluation was reached, or the system's own text failed.
MessagePlace placeOf(const MMEvaluationError& error, const SourceMap& map,
                     const ExpressionText& text);

/// Why an expression could not be evaluated on an object, and where in its text.
struct EvaluationFailure {
    MessagePlace place;
    std::string message;
};

/// Writes why an expression could not be evaluated, object by object, to the standard error
/// stream. Borrows the text and the map of the expression.
class EvaluationMessages {
public:
    EvaluationMessages(const ExpressionText& text, const SourceMap& map, const Options& options)
        : text_(text), map_(map), writer_(options) {}

    /// `uid` is of the object that the expression was evaluated on. The source line is shown when
    /// it is not the one shown last.
    void show(const std::string& uid, const MMEvaluationError& error) {
        show({placeOf(error, map_, text_), uid + ": " + error.what()});
    }
    void show(EvaluationFailure failure);

private:
    const ExpressionText& text_;
    const SourceMap& map_;
    MessageWriter writer_;
    std::string lastExcerpt_;
};

}  // namespace mmq
