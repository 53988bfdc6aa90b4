// Conditionals, one class a kind of result.
#pragma once

#include "fliodram/MMExpr.h"

/// What the conditionals share: the test, and two branches of which one is evaluated.
template <class Branch>
class MMIfBranches {
public:
    explicit MMIfBranches(const OrvCyclicPtrBody& holder)
        : test_(holder), then_(holder), else_(holder) {}

    void setTest(const OrvCyclicPtr<MMValueExpr>& test) { test_ = test; }
    void setThen(const OrvCyclicPtr<Branch>& branch) { then_ = branch; }
    void setElse(const OrvCyclicPtr<Branch>& branch) { else_ = branch; }

    /// The branch that the test chooses.
    const Branch& chosen(MMEvaluationContext& context) const {
        context.checkDepth();
        context.step();  // a conditional may be its own branch, which takes no stack
        return test_->evaluateBoolean(context) ? *then_ : *else_;
    }

    void print(MMTargetPrinter& printer, const char* className) const;

private:
    OrvCyclicMember<MMValueExpr> test_;
    OrvCyclicMember<Branch> then_;
    OrvCyclicMember<Branch> else_;
};

/// A value by a test. Operands are given to the constructor or by setters.
class __attribute__((visibility("default"))) MMIfValueExpr final : public MMValueExpr {
public:
    MMIfValueExpr();
    MMIfValueExpr(const OrvCyclicPtr<MMValueExpr>& test,
                  const OrvCyclicPtr<MMValueExpr>& thenBranch,
                  const OrvCyclicPtr<MMValueExpr>& elseBranch);
    void testExpr(const OrvCyclicPtr<MMValueExpr>& test);
    void thenExpr(const OrvCyclicPtr<MMValueExpr>& branch);
    void elseExpr(const OrvCyclicPtr<MMValueExpr>& branch);

    MMValue evaluate(MMEvaluationContext& context) const override;
    bool evaluateBoolean(MMEvaluationContext& context) const override;
    std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const override;
    void appendText(MMEvaluationContext& context, std::string& text) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMIfBranches<MMValueExpr> branches_;
};

/// An object by a test.
class __attribute__((visibility("default"))) MMIfObjectExpr final : public MMObjectExpr {
public:
    MMIfObjectExpr();
    void testExpr(const OrvCyclicPtr<MMValueExpr>& test);
    void thenExpr(const OrvCyclicPtr<MMObjectExpr>& branch);
    void elseExpr(const OrvCyclicPtr<MMObjectExpr>& branch);

    MMObject evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMIfBranches<MMObjectExpr> branches_;
};

/// A collection of objects by a test.
class __attribute__((visibility("default"))) MMIfObjectCollectionExpr final
    : public MMObjectCollectionExpr {
public:
    MMIfObjectCollectionExpr();
    void testExpr(const OrvCyclicPtr<MMValueExpr>& test);
    void thenExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& branch);
    void elseExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& branch);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMIfBranches<MMObjectCollectionExpr> branches_;
};

/// A collection of strings by a test.
class __attribute__((visibility("default"))) MMIfStringCollectionExpr final
    : public MMStringCollectionExpr {
public:
    MMIfStringCollectionExpr();
    void testExpr(const OrvCyclicPtr<MMValueExpr>& test);
    void thenExpr(const OrvCyclicPtr<MMStringCollectionExpr>& branch);
    void elseExpr(const OrvCyclicPtr<MMStringCollectionExpr>& branch);

    void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMIfBranches<MMStringCollectionExpr> branches_;
};
