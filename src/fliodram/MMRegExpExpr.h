// Regular expressions: match, find, replace.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fliodram/MMExpr.h"
#include "rw/RWCRegexp.h"

/// An operand that is a pattern, with the regular expression that was made of it last: of a
/// constant the only one. Member of the expression that needs it.
///
/// Each application counts the steps of compiling a pattern when it comes to it first, and when it
/// is another one than before; whether it is compiled by then or not, so that all count the same.
class MMPatternOperand {
public:
    MMPatternOperand(const OrvCyclicPtrBody& holder, const OrvCyclicPtr<MMValueExpr>& pattern);

    /// The pattern compiled. Where it is not well formed, throws MMEvaluationError of the operand.
    const RWCRegexp& evaluate(MMEvaluationContext& context) const {
        if (!isReady_) {
            return find(context);
        }
        countUse(context);
        return *compiled_;
    }
    const MMValueExpr* get() const { return pattern_.get(); }

private:
    const RWCRegexp& find(MMEvaluationContext& context) const;
    void compile(MMEvaluationContext& context, std::string_view pattern) const;
    void countUse(MMEvaluationContext& context) const {
        if (application_ != context.getApplication()) {
            context.step(steps_);
            application_ = context.getApplication();
        }
    }

    OrvCyclicOperand<MMValueExpr> pattern_;
    bool isConstant_;
    mutable bool isReady_ = false;  // the pattern is a constant, and well formed
    mutable std::string text_;      // of which the following was made
    mutable std::optional<RWCRegexp> compiled_;
    mutable std::uint64_t steps_ = 0;        // for compiling it
    mutable std::uint64_t application_ = 0;  // which counted these last
};

/// Whether the pattern matches anywhere in the text.
class __attribute__((visibility("default"))) MMRegExpMatchExpr : public MMValueExpr {
public:
    MMRegExpMatchExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                      const OrvCyclicPtr<MMValueExpr>& text);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    const MMTextColumn* findColumn(const MMModel& model) const override {
        return text_->findColumn(model);
    }
    void print(MMTargetPrinter& printer) const override;

private:
    MMPatternOperand pattern_;
    OrvCyclicOperand<MMValueExpr> text_;
};

/// The first match of the pattern in the text, or the empty text.
class __attribute__((visibility("default"))) MMRegExpFindExpr : public MMValueExpr {
public:
    MMRegExpFindExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                     const OrvCyclicPtr<MMValueExpr>& text);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMPatternOperand pattern_;
    OrvCyclicOperand<MMValueExpr> text_;
};

/// The text with the first match of the pattern replaced, or every match: matches that do not
/// overlap, from left to right. In the replacement "\0" stands for the match, "\1" to "\9" for its
/// groups.
class __attribute__((visibility("default"))) MMRegExpReplaceExpr : public MMValueExpr {
public:
    MMRegExpReplaceExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                        const OrvCyclicPtr<MMValueExpr>& text,
                        const OrvCyclicPtr<MMValueExpr>& replacement);
    void replaceAll(bool replaceAll);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMPatternOperand pattern_;
    OrvCyclicOperand<MMValueExpr> text_;
    OrvCyclicOperand<MMValueExpr> replacement_;
    bool replaceAll_ = false;
};
