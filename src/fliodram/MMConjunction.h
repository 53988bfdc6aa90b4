// What can be said of a condition without evaluating it.
#pragma once

#include <vector>

#include "fliodram/MMOperatorExpr.h"

/// The comparisons with which a condition begins, joined by "and", that look at nothing but a text
/// of the object that the condition is applied to.
///
/// For most objects of a large model their verdicts are known, since other objects have the same
/// texts. Where one fails, the condition does, as if it had been evaluated: comparisons like these
/// do not fail to have a value. Made by an abstraction when it is first applied as a condition;
/// borrows the comparisons, and belongs to the thread of its expression.
class MMConjunction {
public:
    MMConjunction(const MMValueExpr& condition, const MMObjectVarExpr& variable);

    /// Whether the condition begins with no such comparison, so that nothing is ever known.
    bool isEmpty() const { return comparisons_.empty(); }

    /// What the condition gives for an object of the model, if that is known.
    MMVerdict judge(const MMModel& model, MMObject object) const {
        for (const MMRelationalExpr* const comparison : comparisons_) {
            const MMVerdict verdict = comparison->verdictOn(model, object);
            if (verdict != MMVerdict::holds) {
                return verdict;
            }
        }
        return whereAllHold_;
    }

    /// Passes over the objects at the beginning of a range for which the condition fails; gives
    /// what is known for the next one, or MMVerdict::fails where there is none.
    MMVerdict skipFailing(const MMModel& model, const MMObject*& next, const MMObject* last) const {
        MMVerdict verdict = MMVerdict::fails;
        while (next != last && (verdict = judge(model, *next)) == MMVerdict::fails) {
            ++next;
        }
        return verdict;
    }

private:
    std::vector<const MMRelationalExpr*> comparisons_;
    MMVerdict whereAllHold_ = MMVerdict::unknown;
};
