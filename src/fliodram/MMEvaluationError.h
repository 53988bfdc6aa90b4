// The exception in which a failing evaluation ends.
#pragma once

#include <string>
#include <string_view>

#include "support/OrvException.h"

class MMTarget;

/// An evaluation that could not be completed, with a sentence for the user in what().
///
/// It leaves the expression, the context and the model as usable as before.
class __attribute__((visibility("default"))) MMEvaluationError : public OrvException {
public:
    /// Why it could not: the expression has no value for this object, a limit was reached, or the
    /// host called the evaluation off.
    enum class Kind {
        failure,
        stepLimit,
        timeLimit,
        collectionLimit,
        textLimit,
        depthLimit,
        cancelled,
        memoryLimit
    };

    MMEvaluationError(Kind kind, const std::string& message, const MMTarget* target = nullptr);
    ~MMEvaluationError() override;

    Kind getKind() const { return kind_; }
    /// True when a limit was reached, or the evaluation called off, rather than a value missing.
    bool isLimit() const { return kind_ != Kind::failure; }

    /// The expression that could not be evaluated although its operands could; null where that is
    /// not known, as of a limit on the whole. Good for looking up in a map of the compilation, as
    /// long as the expression lives; what is set first stays.
    const MMTarget* getTarget() const { return target_; }
    void setTarget(const MMTarget& target) noexcept;

private:
    Kind kind_;
    const MMTarget* target_;
};

/// Throws the error of an expression that has no value, with `message`; `target` is the expression,
/// where the caller knows it.
[[noreturn]] void throwEvaluationFailure(const std::string& message,
                                         const MMTarget* target = nullptr);

/// Appends a text to a sentence, in quotes, and cut where it is longer than 40 bytes.
void appendQuoted(std::string& sentence, std::string_view text);

/// Runs what an expression does when its operands are evaluated; if that throws, `target` is told
/// as the expression that failed. Costs nothing where nothing throws.
template <class Operation>
auto evaluateAt(const MMTarget& target, const Operation& operation) {
    try {
        return operation();
    } catch (MMEvaluationError& error) {
        error.setTarget(target);
        throw;
    }
}
