// The values of the naive evaluator, and what the functions and operators of the language make of
// them, written down from their descriptions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ast/ExpressionNode.h"
#include "fliodram/StructModel.h"

/// Thrown where an expression has no value.
struct NaiveFailure {
    std::string reason;
};

/// Thrown where the naive evaluator gives no answer: where an evaluation takes more work than the
/// tests want to spend on it, such as a condition that reaches itself without end.
struct NaiveRefusal {};

/// A collection as far as it can be computed: its elements, and the failure that somebody meets
/// who wants more than those. So what is lazy needs no laziness here.
template <class Element>
struct NaiveCollection {
    std::vector<Element> elements;
    std::optional<NaiveFailure> failure;

    /// All elements; throws the failure if there is one.
    const std::vector<Element>& all() const {
        if (failure) {
            throw NaiveFailure(*failure);
        }
        return elements;
    }
};
using NaiveObjects = NaiveCollection<const Thing*>;
using NaiveTexts = NaiveCollection<std::string>;
using NaiveValue =
    std::variant<bool, int, double, std::string, const Thing*, NaiveObjects, NaiveTexts>;
using NaiveArguments = std::vector<NaiveValue>;

namespace naive {

/// The text of a boolean, a number or a text.
std::string textOf(const NaiveValue& value);

NaiveValue arithmetic(BinaryOperator op, const NaiveValue& lhs, const NaiveValue& rhs);
NaiveValue negated(const NaiveValue& value);
/// A comparison of two values of one type, collections included.
bool holds(RelationalOperator op, const NaiveValue& lhs, const NaiveValue& rhs);
/// Whether a sort key stands before another one of its type, a NaN behind all numbers.
bool isKeyBefore(const NaiveValue& left, const NaiveValue& right);

/// A built-in function that needs no more than the values of its arguments.
NaiveValue apply(const std::string& function, const NaiveArguments& arguments);

std::string attribute(const Thing* object, const std::string& name);
std::vector<const Thing*> targets(const Thing* object, const std::string& association);

}  // namespace naive
