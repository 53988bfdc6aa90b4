#include "fliodram/MMConjunction.h"

#include <algorithm>

namespace {

const MMBooleanExpr* asConjunction(const MMValueExpr* condition) {
    const auto* const boolean = dynamic_cast<const MMBooleanExpr*>(condition);
    return boolean != nullptr && boolean->isConjunction() ? boolean : nullptr;
}

// The operands of a chain of conjunctions, from the left. Of a chain that is longer than many,
// none.
std::vector<const MMValueExpr*> operandsOf(const MMValueExpr& condition) {
    constexpr std::size_t many = 16;
    std::vector<const MMValueExpr*> operands;
    const MMValueExpr* first = &condition;
    while (const MMBooleanExpr* const conjunction = asConjunction(first)) {
        if (operands.size() == many) {
            return {};
        }
        operands.push_back(conjunction->rhs().get());
        first = conjunction->lhs().get();
    }
    operands.push_back(first);
    std::reverse(operands.begin(), operands.end());
    return operands;
}

}  // namespace

MMConjunction::MMConjunction(const MMValueExpr& condition, const MMObjectVarExpr& variable) {
    const std::vector<const MMValueExpr*> operands = operandsOf(condition);
    for (const MMValueExpr* const operand : operands) {
        const auto* const comparison = dynamic_cast<const MMRelationalExpr*>(operand);
        if (comparison == nullptr || comparison->getComparedObject() != &variable) {
            return;
        }
        comparisons_.push_back(comparison);
    }
    whereAllHold_ = operands.empty() ? MMVerdict::unknown : MMVerdict::holds;
}
