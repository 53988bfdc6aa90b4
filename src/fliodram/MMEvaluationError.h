// The exception in which a failing evaluation ends.
#pragma once

#include <string>

#include "support/OrvException.h"

/// An evaluation that could not be completed, with a sentence for the user in what().
///
/// It leaves the expression, the context and the model as usable as before.
class __attribute__((visibility("default"))) MMEvaluationError : public OrvException {
public:
    /// Why it could not: the expression has no value for this object, or a limit was reached.
    enum class Kind { failure, stepLimit, timeLimit, collectionLimit, textLimit, depthLimit };

    MMEvaluationError(Kind kind, const std::string& message);
    ~MMEvaluationError() override;

    Kind getKind() const { return kind_; }
    /// True when a limit was reached rather than a value missing.
    bool isLimit() const { return kind_ != Kind::failure; }

private:
    Kind kind_;
};

/// Throws the error of an expression that has no value, with `message`.
[[noreturn]] void throwEvaluationFailure(const std::string& message);
