// Evaluating an expression on many objects of a model, as mmq eval does.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "Compilation.h"
#include "EvaluationBudget.h"
#include "EvaluationMessages.h"
#include "ResultWriter.h"
#include "why/Drawing.h"

namespace mmq {

inline bool isDrawn(Format format) { return format == Format::mermaid || format == Format::dot; }

/// What evaluations yield, one after the other.
struct EvaluationResults {
    /// A failure that is shown when so much of the text has been written.
    struct Failure {
        std::size_t position;
        EvaluationFailure failure;
    };

    std::string text;  ///< in the form of the output
    std::vector<Failure> failures;
    bool hasFailed = false;
    bool hasFalse = false;
    bool isCut = false;  ///< whether time was up before the last object
};

/// Evaluates one expression on objects of one model, one after the other.
///
/// Belongs to one thread at a time, as its expression does. Borrows what it is made of, which other
/// evaluations may use at the same time, but for the expression.
class Evaluation {
public:
    Evaluation(const RepositoryModel& model, const ExpressionText& text,
               const CompiledExpression& expression, const Options& options,
               const EvaluationBudget& budget);

    /// What the objects yield. One that fails is reported, and the others are gone on with, until
    /// time is up; in a form that is drawn they are added to the drawing instead.
    EvaluationResults run(const MMObjectRange& objects);

    /// What paths reached in all runs, and whether there was a path of objects at all.
    const Drawing& drawing() const { return drawing_; }
    bool hasPath() const { return hasPath_; }

private:
    void evaluate(MMObject object);
    void draw(MMObject object);
    void fail(MMObject object, const MMEvaluationError& error);
    std::string why(MMObject object);
    void writeValue(MMObject object, const MMValue& value);

    const RepositoryModel& model_;
    const ExpressionText& text_;
    const CompiledExpression& expression_;
    const Options& options_;
    const EvaluationBudget& budget_;
    MMEvaluationContext context_;
    std::ostringstream stream_;
    ResultWriter writer_;
    EvaluationResults results_;  // of the run so far, but for the text
    Drawing drawing_;
    bool hasPath_ = false;
};

}  // namespace mmq
