// Let expressions and the bindings that they cache.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "codegen/MMCachedExpr.h"
#include "fliodram/MMExpr.h"
#include "foundation/OrvSimplePtr.h"

/// What a binding keeps: nothing yet, or the value that its expression had.
class MMCachedState {
public:
    /// The bytes for which the binding called MMEvaluationContext::keep().
    std::size_t size() const;
    bool hasSize() const {
        const MMValue* const value = std::get_if<MMValue>(&content);
        return value != nullptr ? value->getKind() == MMValue::Kind::text : content.index() > 2;
    }

    std::variant<std::monostate, MMValue, MMObject, std::vector<MMObject>, std::vector<std::string>>
        content;
};

/// Gives a binding an empty state for as long as this object lives and restores what it had
/// before, also when an exception passes. With the context of an evaluation, gives back to that
/// what the binding kept.
class MMCacheScope {
public:
    explicit MMCacheScope(MMCachedExpr& binding, MMEvaluationContext* context = nullptr)
        : binding_(binding), context_(context) {
        binding_.exchangeState(state_);
    }
    MMCacheScope(const MMCacheScope&) = delete;
    MMCacheScope& operator=(const MMCacheScope&) = delete;
    ~MMCacheScope() {
        binding_.exchangeState(state_);
        if (context_ != nullptr && state_.hasSize()) {
            context_->giveBack(state_.size());
        }
    }

private:
    MMCachedExpr& binding_;
    MMEvaluationContext* context_;
    MMCachedState state_;
};

/// A let-bound value: evaluated on its first use in an evaluation of its let, kept for the others.
class __attribute__((visibility("default"))) MMValueBindingExpr final : public MMValueExpr,
                                                                        public MMCachedExpr {
public:
    MMValueBindingExpr();
    explicit MMValueBindingExpr(const OrvCyclicPtr<MMValueExpr>& expr);
    void expr(const OrvCyclicPtr<MMValueExpr>& expr);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void exchangeState(MMCachedState& state) noexcept override;
    void print(MMTargetPrinter& printer) const override;
    void printCall(MMTargetPrinter& printer) const;

private:
    OrvCyclicMember<MMValueExpr> expr_;
    mutable MMCachedState state_;
};

/// A let-bound object: evaluated on its first use in an evaluation of its let, kept for the others.
class __attribute__((visibility("default"))) MMObjectBindingExpr final : public MMObjectExpr,
                                                                         public MMCachedExpr {
public:
    MMObjectBindingExpr();
    void expr(const OrvCyclicPtr<MMObjectExpr>& expr);

    MMObject evaluate(MMEvaluationContext& context) const override;
    void exchangeState(MMCachedState& state) noexcept override;
    void print(MMTargetPrinter& printer) const override;
    void printCall(MMTargetPrinter& printer) const;

private:
    OrvCyclicMember<MMObjectExpr> expr_;
    mutable MMCachedState state_;
};

/// A let-bound collection of objects: evaluated on its first use in an evaluation of its let, kept
/// for the others.
class __attribute__((visibility("default"))) MMObjectCollectionBindingExpr final
    : public MMObjectCollectionExpr,
      public MMCachedExpr {
public:
    MMObjectCollectionBindingExpr();
    void expr(const OrvCyclicPtr<MMObjectCollectionExpr>& expr);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    bool findRange(MMEvaluationContext& context, MMObjectRange& range,
                   std::vector<MMObject>& buffer) const override;
    void exchangeState(MMCachedState& state) noexcept override;
    void print(MMTargetPrinter& printer) const override;
    void printCall(MMTargetPrinter& printer) const;

private:
    OrvCyclicMember<MMObjectCollectionExpr> expr_;
    mutable MMCachedState state_;
};

/// A let-bound collection of strings: evaluated on its first use in an evaluation of its let, kept
/// for the others.
class __attribute__((visibility("default"))) MMStringCollectionBindingExpr final
    : public MMStringCollectionExpr,
      public MMCachedExpr {
public:
    MMStringCollectionBindingExpr();
    void expr(const OrvCyclicPtr<MMStringCollectionExpr>& expr);

    void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const override;
    void exchangeState(MMCachedState& state) noexcept override;
    void print(MMTargetPrinter& printer) const override;
    void printCall(MMTargetPrinter& printer) const;

private:
    OrvCyclicMember<MMStringCollectionExpr> expr_;
    mutable MMCachedState state_;
};

/// A value with a binding, which it owns, evaluated at most once for each evaluation of the let.
class __attribute__((visibility("default"))) MMLetValueExpr final : public MMValueExpr {
public:
    /// Throws OrvAssertion if the binding has an owner already.
    MMLetValueExpr(OrvSimplePtr<MMCachedExpr> binding, const OrvCyclicPtr<MMValueExpr>& body);

    MMValue evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvSimplePtr<MMCachedExpr> binding_;
    OrvCyclicOperand<MMValueExpr> body_;
};

/// A object with a binding, which it owns, evaluated at most once for each evaluation of the let.
class __attribute__((visibility("default"))) MMLetObjectExpr final : public MMObjectExpr {
public:
    /// Throws OrvAssertion if the binding has an owner already.
    MMLetObjectExpr(OrvSimplePtr<MMCachedExpr> binding, const OrvCyclicPtr<MMObjectExpr>& body);

    MMObject evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvSimplePtr<MMCachedExpr> binding_;
    OrvCyclicOperand<MMObjectExpr> body_;
};

/// A collection of objects with a binding, which it owns, evaluated at most once for each
/// evaluation of the let.
class __attribute__((visibility("default"))) MMLetObjectCollectionExpr final
    : public MMObjectCollectionExpr {
public:
    /// Throws OrvAssertion if the binding has an owner already.
    MMLetObjectCollectionExpr(OrvSimplePtr<MMCachedExpr> binding,
                              const OrvCyclicPtr<MMObjectCollectionExpr>& body);

    bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvSimplePtr<MMCachedExpr> binding_;
    OrvCyclicOperand<MMObjectCollectionExpr> body_;
};

/// A collection of strings with a binding, which it owns, evaluated at most once for each
/// evaluation of the let.
class __attribute__((visibility("default"))) MMLetStringCollectionExpr final
    : public MMStringCollectionExpr {
public:
    /// Throws OrvAssertion if the binding has an owner already.
    MMLetStringCollectionExpr(OrvSimplePtr<MMCachedExpr> binding,
                              const OrvCyclicPtr<MMStringCollectionExpr>& body);

    void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvSimplePtr<MMCachedExpr> binding_;
    OrvCyclicOperand<MMStringCollectionExpr> body_;
};
