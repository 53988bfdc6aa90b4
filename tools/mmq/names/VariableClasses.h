// What is known of the classes of an expression's variables.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "ast/ExpressionNode.h"
#include "names/NameVocabulary.h"

namespace mmq {

/// The classes that an object may have when a condition is true of it, and when it is false.
struct ConditionOutcome {
    ClassSet whenTrue;
    ClassSet whenFalse;
};

/// The variables that are in force at one place of an expression, the innermost last, each with the
/// classes that its object may have there. A test `class x = "C"` narrows them for what is
/// evaluated only where it is true, or only where it is false.
///
/// Belongs to one walk over an expression; borrows the vocabulary.
class VariableClasses {
public:
    VariableClasses(const NameVocabulary& vocabulary, const ClassSet& classesOfThis);

    /// Brings a variable in force. `symbol` may be null of one that is only called "current".
    void push(const VariableSymbol* symbol, bool isCurrent, const ClassSet& classes);
    void pop() { variables_.pop_back(); }

    /// The classes of the variable or of the model at which a path begins.
    const ClassSet& classesOf(const PathNode& path) const;

    const ClassSet& classesOf(std::size_t variable) const { return variables_[variable].classes; }
    void setClasses(std::size_t variable, const ClassSet& classes) {
        variables_[variable].classes = classes;
    }

    /// The numbers of the variables of which a condition says something.
    std::set<std::size_t> testedBy(ExpressionNode& condition) const;

    /// What a condition says of a variable whose object may have these classes; of the innermost
    /// one.
    ConditionOutcome judge(ExpressionNode& condition, std::size_t variable,
                           const ClassSet& classes) const;
    ConditionOutcome judgeInnermost(ExpressionNode& condition) const {
        return judge(condition, variables_.size() - 1, variables_.back().classes);
    }
    /// The outcome of `left OP right` from that of `left`.
    ConditionOutcome combine(BinaryOperator op, const ConditionOutcome& left, ExpressionNode& right,
                             std::size_t variable, const ClassSet& classes) const;

private:
    struct Variable {
        const VariableSymbol* symbol;
        bool isCurrent;
        ClassSet classes;
    };

    std::optional<std::size_t> find(const PathNode& path) const;
    std::optional<std::size_t> testedBy(const RelationalExpressionNode& test) const;
    void collectTested(ExpressionNode& condition, std::set<std::size_t>& variables) const;
    ConditionOutcome judgeTest(const RelationalExpressionNode& test, std::size_t variable,
                               const ClassSet& classes) const;

    const NameVocabulary& vocabulary_;
    std::vector<Variable> variables_;
};

/// A comparison of the name of an object's class with a text.
struct ClassTest {
    const ExpressionNode* object = nullptr;
    const StringConstantNode* className = nullptr;

    explicit operator bool() const { return object != nullptr; }
};

/// The node as a test of a class, if it is one: `class x = "C"`, either way round, or with "<>".
ClassTest classTestOf(const RelationalExpressionNode& node);

}  // namespace mmq
