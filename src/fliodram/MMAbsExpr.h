// Abstractions: expressions as functions of one object, which is what a compilation returns.
#pragma once

#include <memory>
#include <vector>

#include "fliodram/MMConjunction.h"
#include "fliodram/MMExpr.h"
#include "fliodram/MMObjectVarExpr.h"

/// A function of one object that yields a value: binds the variable and evaluates the body.
class __attribute__((visibility("default"))) MMValueAbsExpr final : public MMExpr {
public:
    MMValueAbsExpr(const OrvCyclicPtr<MMObjectVarExpr>& variable,
                   const OrvCyclicPtr<MMValueExpr>& body);

    /// Applies the function to an object of the context's model, from outside any evaluation: the
    /// context's limits count from here. The value's text is its own. Throws MMEvaluationError,
    /// and std::bad_alloc where memory is short; nothing else leaves, and whatever leaves, the
    /// expression can be applied again.
    MMValue apply(MMEvaluationContext& context, MMObject object) const;

    /// Apply the function inside an evaluation: as MMValueExpr's operations of these names do.
    MMValue evaluateFor(MMEvaluationContext& context, MMObject object) const {
        const MMVariableBinding binding(*variable_, object);
        return body_->evaluate(context);
    }
    bool evaluateBooleanFor(MMEvaluationContext& context, MMObject object) const {
        if (mayHaveVerdicts_) {
            const MMVerdict verdict = conjunction().judge(context.getModel(), object);
            if (verdict != MMVerdict::unknown) {
                return verdict == MMVerdict::holds;
            }
        }
        return evaluateBodyFor(context, object);
    }
    /// Goes on to the first object of a range for which the function is true; false where there is
    /// none. Each object that is looked at takes a step.
    bool findTrue(MMEvaluationContext& context, const MMObject*& next, const MMObject* last) const {
        while (next != last) {
            const MMVerdict verdict = skipFalse(context, next, last);
            if (verdict == MMVerdict::holds ||
                (verdict == MMVerdict::unknown && evaluateBodyFor(context, *next))) {
                return true;
            }
            next += verdict == MMVerdict::unknown ? 1 : 0;
        }
        return false;
    }
    /// See MMValueExpr::findColumn().
    const MMTextColumn* findColumn(const MMModel& model) const { return body_->findColumn(model); }

    std::string_view evaluateTextFor(MMEvaluationContext& context, MMObject object,
                                     std::string& buffer) const {
        const MMVariableBinding binding(*variable_, object);
        return body_->evaluateText(context, buffer);
    }

    void print(MMTargetPrinter& printer) const override;

private:
    const MMConjunction& conjunction() const {
        return conjunction_ != nullptr ? *conjunction_ : makeConjunction();
    }
    const MMConjunction& makeConjunction() const;
    bool evaluateBodyFor(MMEvaluationContext& context, MMObject object) const {
        const MMVariableBinding binding(*variable_, object);
        return body_->evaluateBoolean(context);
    }
    // Passes over objects for which the function is known to be false, a number between two looks
    // at the limits; gives what is known of the next one, whose step is taken as well.
    MMVerdict skipFalse(MMEvaluationContext& context, const MMObject*& next,
                        const MMObject* last) const {
        constexpr std::ptrdiff_t many = 1024;
        MMVerdict verdict = MMVerdict::unknown;
        const MMObject* const first = next;
        if (mayHaveVerdicts_) {
            const MMObject* const end = last - next > many ? next + many : last;
            verdict = conjunction().skipFailing(context.getModel(), next, end);
        }
        context.step(static_cast<std::uint64_t>(next - first) +
                     (verdict == MMVerdict::fails ? 0U : 1U));
        return verdict;
    }

    OrvCyclicOperand<MMObjectVarExpr> variable_;
    OrvCyclicOperand<MMValueExpr> body_;
    mutable std::unique_ptr<const MMConjunction> conjunction_;  // once it is applied as a condition
    mutable bool mayHaveVerdicts_ = true;
};

/// A function of one object that yields a collection of objects.
class __attribute__((visibility("default"))) MMObjectCollectionAbsExpr final : public MMExpr {
public:
    MMObjectCollectionAbsExpr(const OrvCyclicPtr<MMObjectVarExpr>& variable,
                              const OrvCyclicPtr<MMObjectCollectionExpr>& body);

    /// Applies the function from outside any evaluation, as MMValueAbsExpr::apply() does; returns
    /// the objects in order.
    std::vector<MMObject> apply(MMEvaluationContext& context, MMObject object) const;

    /// Applies the function inside an evaluation, as MMObjectCollectionExpr::forEach() does.
    bool forEachOf(MMEvaluationContext& context, MMObject object,
                   MMObjectConsumer& consumer) const {
        const MMVariableBinding binding(*variable_, object);
        return body_->forEach(context, consumer);
    }

    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectVarExpr> variable_;
    OrvCyclicOperand<MMObjectCollectionExpr> body_;
};
