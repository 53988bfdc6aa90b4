// Values made from texts: joining, case and trimming, conversion; and the count of a collection.
#pragma once

#include "fliodram/MMAbsExpr.h"
#include "fliodram/MMExpr.h"

class MMAssociationExpr;

/// The number of objects of a collection.
class __attribute__((visibility("default"))) MMCountExpr final : public MMValueExpr {
public:
    explicit MMCountExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection);

    MMValue evaluate(MMEvaluationContext& context) const override;
    int evaluateInteger(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
    const MMAssociationExpr* association_;  // the collection, if it is one
};

/// The strings of a collection joined, with the delimiter between each two.
class __attribute__((visibility("default"))) MMDelimiterExpr final : public MMValueExpr {
public:
    MMDelimiterExpr(const OrvCyclicPtr<MMValueExpr>& delimiter,
                    const OrvCyclicPtr<MMStringCollectionExpr>& strings);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void appendText(MMEvaluationContext& context, std::string& text) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueExpr> delimiter_;
    OrvCyclicOperand<MMStringCollectionExpr> strings_;
};

enum MMStringOp { MM_LOWER = 1, MM_UPPER = 2, MM_TRIM = 3 };

/// A text in lower or upper case (ASCII letters; other bytes stay), or without the white space at
/// both ends.
class __attribute__((visibility("default"))) MMStringManipulationExpr final : public MMValueExpr {
public:
    MMStringManipulationExpr(MMStringOp op, const OrvCyclicPtr<MMValueExpr>& text);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMStringOp op_;
    OrvCyclicOperand<MMValueExpr> text_;
};

/// A value converted: see MMValue::convertedTo().
class __attribute__((visibility("default"))) MMConversionExpr final : public MMValueExpr {
public:
    MMConversionExpr(const OrvCyclicPtr<MMValueExpr>& value, MMValueType type);

    MMValue evaluate(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueExpr> value_;
    MMValueType type_;
};

/// A function of one object applied to an object.
class __attribute__((visibility("default"))) MMApplyValueExpr final : public MMValueExpr {
public:
    MMApplyValueExpr(const OrvCyclicPtr<MMValueAbsExpr>& function,
                     const OrvCyclicPtr<MMObjectExpr>& object);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMValueAbsExpr> function_;
    MMObjectOperand object_;
};
