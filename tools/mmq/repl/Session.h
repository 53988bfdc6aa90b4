// What a prompt does with what is typed.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "Compilation.h"
#include "ModelNames.h"
#include "Options.h"
#include "ResultWriter.h"
#include "assist/Completion.h"
#include "repl/ReplCommands.h"

namespace mmq {

/// One conversation about one model, or about none. Results go to the standard output, messages to
/// the standard error stream. Borrows the options and the flag. Belongs to one thread; the flag may
/// be set at any time.
class Session {
public:
    /// Evaluations end when `isInterrupted` becomes true. Throws ModelError where the model that
    /// the options name cannot be read.
    Session(const Options& options, const std::atomic<bool>& isInterrupted);

    /// What to say in the beginning.
    std::string greeting() const;

    /// Whether an input is not whole yet: its expression goes on.
    static bool isUnfinished(const std::string& input);
    /// Does what an input asks for: a command, or the evaluation of an expression.
    void run(const std::string& input);
    /// What may stand at a place of an input.
    Completion complete(const std::string& input, std::size_t cursor) const;

    /// Whether the user asked to leave.
    bool isOver() const { return isOver_; }
    /// The exit status that the first input that failed would have had alone, or EXIT_DONE.
    int firstFailure() const { return firstFailure_; }

private:
    void runCommand(const ReplCommand& command, const std::string& argument);
    void evaluate(const std::string& expression, bool isTimed, bool explains);
    /// The same where a type is no answer.
    void evaluateOnModel(const std::string& expression, bool isTimed, bool explains);
    void apply(const ExpressionText& text, const CompiledExpression& expression, bool explains);
    void applyTo(MMObject object, const CompiledExpression& expression,
                 MMEvaluationContext& context, ResultWriter& writer) const;
    bool hasWrongNames(const CompiledExpression& expression, Messages& messages) const;
    void showType(const std::string& expression);
    void showTarget(const std::string& expression);
    void showClasses();
    void describe(const std::string& className);
    /// The objects of a class, or the object of a uid; the root for the empty name.
    void choose(const std::string& name);
    void time(const std::string& argument);

    NameSource names() const;
    std::vector<std::string> shownClasses() const;
    std::string labelOf(MMObject object) const;
    void refuse(const std::string& sentence, const std::string& advice, int status);
    void fail(int status) { firstFailure_ = firstFailure_ == 0 ? status : firstFailure_; }

    const Options& options_;
    const std::atomic<bool>& isInterrupted_;
    ModelNames names_;
    std::vector<MMObject> objects_;  // that expressions are evaluated on
    std::string onClass_;            // the class that was chosen, or empty
    bool showsTimes_ = false;
    bool isOver_ = false;
    int firstFailure_ = 0;
};

}  // namespace mmq
