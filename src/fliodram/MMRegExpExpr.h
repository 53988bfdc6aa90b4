// Regular expressions: match, find, replace.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "fliodram/MMExpr.h"
#include "rw/RWCRegexp.h"

/// The last pattern that an expression compiled. Member of the expression that needs it.
class MMPatternCache {
public:
    /// The compiled pattern; throws MMEvaluationError about `source`, which gave it, for one that
    /// is not well formed.
    const RWCRegexp& compiled(const MMTarget& source, std::string_view pattern);

private:
    std::string pattern_;
    std::optional<RWCRegexp> compiled_;
};

/// Whether the pattern matches anywhere in the text.
class __attribute__((visibility("default"))) MMRegExpMatchExpr : public MMValueExpr {
public:
    MMRegExpMatchExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                      const OrvCyclicPtr<MMValueExpr>& text);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMValueExpr> pattern_;
    OrvCyclicMember<MMValueExpr> text_;
    mutable MMPatternCache cache_;
};

/// The first match of the pattern in the text, or the empty text.
class __attribute__((visibility("default"))) MMRegExpFindExpr : public MMValueExpr {
public:
    MMRegExpFindExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                     const OrvCyclicPtr<MMValueExpr>& text);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicMember<MMValueExpr> pattern_;
    OrvCyclicMember<MMValueExpr> text_;
    mutable MMPatternCache cache_;
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
    OrvCyclicMember<MMValueExpr> pattern_;
    OrvCyclicMember<MMValueExpr> text_;
    OrvCyclicMember<MMValueExpr> replacement_;
    bool replaceAll_ = false;
    mutable MMPatternCache cache_;
};
