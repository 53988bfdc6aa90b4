// An expression evaluated twice: compiled, and by the naive evaluator.
#pragma once

#include <string>
#include <vector>

#include "evaluation/ColumnModel.h"
#include "evaluation/ExpressionGenerator.h"
#include "evaluation/NaiveEvaluator.h"
#include "evaluation/SmallModel.h"
#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMEvaluationContext.h"

/// What an evaluation ends in. The text is the kind of the value (the letter of its type) and the
/// value, collections as the identifiers of their objects: "I:7", "C:n1 n2"; or why it failed.
struct Outcome {
    enum class Kind { value, failure, limit };
    Kind kind = Kind::value;
    std::string text;

    /// Failures need not agree in their words.
    bool operator==(const Outcome& other) const {
        return kind == other.kind && (kind == Kind::failure || text == other.text);
    }
};

/// A text compiled by the entry point for its type: B as a condition, I, R and S as an attribute,
/// C as an association.
class CompiledText {
public:
    CompiledText(TypeLetter type, const std::string& text);

    /// The messages, where the text does not compile.
    const std::string& errors() const { return errors_; }
    Outcome evaluate(MMEvaluationContext& context, const Thing& object) const;
    /// The same in a context of the model with columns.
    Outcome evaluate(MMEvaluationContext& context, const ColumnModel& model,
                     const Thing& object) const;

private:
    template <class ToThing>
    Outcome evaluate(MMEvaluationContext& context, MMObject object, const ToThing& toThing) const;

    std::string errors_;
    OrvCountedPtr<MMValueAbsExpr> value_;
    OrvCountedPtr<MMObjectCollectionAbsExpr> collection_;
};

/// The outcome of the naive evaluator; a limit where it gives up.
Outcome naiveOutcome(const SmallModel& model, const std::string& text, const Thing& object);

/// Holds compiled expressions against the naive evaluator, and counts what it saw.
class Comparison {
public:
    explicit Comparison(const SmallModel& model)
        : model_(model), columns_(model), context_(model.view()), columnContext_(columns_) {}

    /// Evaluates on one object after the other, without columns and with them. Returns what
    /// differs, or that the text does not compile; the empty text where all agree.
    std::string difference(TypeLetter type, const std::string& text,
                           const std::vector<const Thing*>& objects);

    int values = 0;
    int failures = 0;
    int skipped = 0;  // where the naive evaluator gave up

private:
    const SmallModel& model_;
    ColumnModel columns_;
    MMEvaluationContext context_;
    MMEvaluationContext columnContext_;
};

/// True where the tests run several times slower than they are built to.
constexpr bool isInstrumented() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#elif defined(__has_feature)
    return __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
    return false;
#endif
}
