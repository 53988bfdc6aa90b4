// What is read of an object: attributes, the name of its class, its identifier.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "fliodram/MMExpr.h"
#include "fliodram/MMFeatureReader.h"
#include "fliodram/MMObjectVarExpr.h"

/// The value of the named attribute of an object, as a text; the empty text where there is no
/// such attribute or no object.
class __attribute__((visibility("default"))) MMAttrExpr final : public MMValueExpr {
public:
    MMAttrExpr(const OrvCyclicPtr<MMValueExpr>& name, const OrvCyclicPtr<MMObjectExpr>& object);

    MMValue evaluate(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    const MMObjectVarExpr* getOwner() const override {
        return constantName_.data() != nullptr ? object_.variable() : nullptr;
    }
    const MMTextColumn* findColumn(const MMModel& model) const override {
        return reader_.column(model);
    }
    void print(MMTargetPrinter& printer) const override;

private:
    std::string_view computeName(MMEvaluationContext& context) const;

    MMObjectOperand object_;
    OrvCyclicOperand<MMValueExpr> name_;
    std::string_view constantName_;  // without data where the name is computed
    mutable MMAttributeReader reader_;
    mutable std::unique_ptr<std::string> computedName_;  // the last one
};

/// The name of an object's class; the empty text for no object.
class __attribute__((visibility("default"))) MMClassNameExpr final : public MMValueExpr {
public:
    explicit MMClassNameExpr(const OrvCyclicPtr<MMObjectExpr>& object);

    MMValue evaluate(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    const MMObjectVarExpr* getOwner() const override { return object_.variable(); }
    const MMTextColumn* findColumn(const MMModel& model) const override {
        return reader_.column(model);
    }
    void print(MMTargetPrinter& printer) const override;

private:
    MMObjectOperand object_;
    mutable MMClassNameReader reader_;
};

/// The text that identifies an object; the empty text for no object.
class __attribute__((visibility("default"))) MMUidExpr final : public MMValueExpr {
public:
    explicit MMUidExpr(const OrvCyclicPtr<MMObjectExpr>& object);

    MMValue evaluate(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMObjectOperand object_;
};
