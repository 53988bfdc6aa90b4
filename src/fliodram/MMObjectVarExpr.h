// Single objects: variables, the model of an object, an object out of a collection.
#pragma once

#include <optional>

#include "fliodram/MMExpr.h"

/// A variable: reads as the object that an abstraction or a quantifier has bound to it.
///
/// What is bound is this very expression object; names play no part. Unbound it reads as no
/// object.
class __attribute__((visibility("default"))) MMObjectVarExpr final : public MMObjectExpr {
public:
    MMObjectVarExpr();
    static bool classof(const OrvCyclicPtrBody& body,
                        std::type_identity<MMObjectVarExpr> /*self*/) {
        return (body.getBodyKinds() & MM_KIND_OBJECT_VARIABLE) != 0;
    }

    MMObject evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

    /// The object that is bound.
    MMObject object() const { return object_; }

private:
    friend class MMVariableBinding;

    mutable MMObject object_ = mmNoObject;
};

/// Binds a variable for as long as this object lives and restores what was bound before, also
/// when an exception passes: a step's condition may be entered again while it is evaluated.
class MMVariableBinding {
public:
    explicit MMVariableBinding(const MMObjectVarExpr& variable)
        : variable_(variable), outer_(variable.object_) {}
    MMVariableBinding(const MMObjectVarExpr& variable, MMObject object)
        : MMVariableBinding(variable) {
        set(object);
    }
    MMVariableBinding(const MMVariableBinding&) = delete;
    MMVariableBinding& operator=(const MMVariableBinding&) = delete;
    ~MMVariableBinding() { variable_.object_ = outer_; }

    void set(MMObject object) { variable_.object_ = object; }

private:
    const MMObjectVarExpr& variable_;
    MMObject outer_;
};

/// An operand that is an object. A variable, as most of them are, is read without a call.
class MMObjectOperand {
public:
    MMObjectOperand(const OrvCyclicPtrBody& holder, const OrvCyclicPtr<MMObjectExpr>& object)
        : object_(holder, object), variable_(asVariable(object.get())) {}

    MMObject evaluate(MMEvaluationContext& context) const {
        return variable_ != nullptr ? variable_->object() : object_->evaluate(context);
    }
    const MMObjectExpr* get() const { return object_.get(); }
    /// The operand, where it is a variable; else null.
    const MMObjectVarExpr* variable() const { return variable_; }

private:
    static const MMObjectVarExpr* asVariable(const MMObjectExpr* object) {
        const bool isVariable =
            object != nullptr && (object->getBodyKinds() & MM_KIND_OBJECT_VARIABLE) != 0;
        return isVariable ? static_cast<const MMObjectVarExpr*>(object) : nullptr;
    }

    OrvCyclicOperand<MMObjectExpr> object_;
    const MMObjectVarExpr* variable_;
};

/// The outermost object that contains an object: the root of its model. Of no object, no object.
class __attribute__((visibility("default"))) MMModelExpr final : public MMObjectExpr {
public:
    explicit MMModelExpr(const OrvCyclicPtr<MMObjectExpr>& object);

    MMObject evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    MMObjectOperand object_;
};

/// One object out of a collection, or no object out of an empty one. The choice is first: the
/// first object; or only, which is the choice where none was set: the one object that there is,
/// and an error where there are more.
class __attribute__((visibility("default"))) MMObjectExtractionExpr final : public MMObjectExpr {
public:
    enum Choice { only = 0, first = 1 };

    explicit MMObjectExtractionExpr(const OrvCyclicPtr<MMObjectCollectionExpr>& collection);
    void choice(Choice choice);

    MMObject evaluate(MMEvaluationContext& context) const override;
    void print(MMTargetPrinter& printer) const override;

private:
    OrvCyclicOperand<MMObjectCollectionExpr> collection_;
    std::optional<Choice> choice_;
};
