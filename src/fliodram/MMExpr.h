// The abstract target expressions, one class a kind of result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "fliodram/MMEvaluationContext.h"
#include "fliodram/MMValue.h"
#include "foundation/OrvCyclicPtr.h"
#include "foundation/OrvObject.h"

class MMObjectVarExpr;
class MMTargetPrinter;

/// The kinds of bodies (OrvCyclicPtrBody::getBodyKinds()) by which OrvConverter tells targets
/// apart.
enum MMTargetKind : std::uint16_t {
    MM_KIND_VALUE = 1,
    MM_KIND_OBJECT = 2,
    MM_KIND_OBJECT_COLLECTION = 4,
    MM_KIND_STRING_COLLECTION = 8,
    MM_KIND_OBJECT_VARIABLE = 16,
    MM_KIND_TRAVERSAL = 32,
    MM_KIND_CONSTANT = 64,
    MM_KIND_ASSOCIATION = 128,
    MM_KIND_OPERATOR = 256
};

/// Whether a place is inside an object, as the bytes of a short text are in the object that has it.
template <class Object>
bool isInside(const Object& object, const void* place) {
    return reinterpret_cast<std::uintptr_t>(place) - reinterpret_cast<std::uintptr_t>(&object) <
           sizeof(Object);
}

/// The base of everything that a compilation builds: a body of its graph.
///
/// Targets are made with new, handed at once to an OrvCyclicPtr, and live and die as a whole
/// graph. A graph belongs to one thread at a time: variables and caches are bound inside it while
/// it is evaluated. An operand may be empty only where a constructor says so.
class __attribute__((visibility("default"))) MMTarget : public OrvObject, public OrvCyclicPtrBody {
public:
    /// Writes the constructor call that makes this target: see MMTargetPrinter.
    virtual void print(MMTargetPrinter& printer) const = 0;

protected:
    explicit MMTarget(Ownership ownership = Ownership::something) : OrvCyclicPtrBody(ownership) {}

private:
    void anchor() const override;
};

/// The base of all expressions.
class __attribute__((visibility("default"))) MMExpr : public MMTarget {
protected:
    explicit MMExpr(Ownership ownership = Ownership::something) : MMTarget(ownership) {}

private:
    void anchor() const override;
};

/// An expression that yields one value.
class __attribute__((visibility("default"))) MMValueExpr : public MMExpr {
public:
    /// With the kind that all values of the expression have, where that is known beforehand.
    explicit MMValueExpr(std::optional<MMValue::Kind> kind = std::nullopt,
                         Ownership ownership = Ownership::something)
        : MMExpr(ownership), kind_(kind) {
        addBodyKinds(MM_KIND_VALUE);
    }
    static bool classof(const OrvCyclicPtrBody& body, std::type_identity<MMValueExpr> /*self*/) {
        return (body.getBodyKinds() & MM_KIND_VALUE) != 0;
    }

    /// The value, for the variables as they are bound now. Throws MMEvaluationError.
    virtual MMValue evaluate(MMEvaluationContext& context) const = 0;

    /// The same for an expression that is used as a condition, as a boolean.
    virtual bool evaluateBoolean(MMEvaluationContext& context) const;

    /// The same for an expression all of whose values are integers.
    virtual int evaluateInteger(MMEvaluationContext& context) const;

    /// The value as a text: a view of the model, of the expression, or of `buffer`, whose content
    /// is replaced.
    virtual std::string_view evaluateText(MMEvaluationContext& context, std::string& buffer) const;

    /// The variable whose object has the value as an attribute, or as the name of its class; null
    /// where more than that is evaluated.
    virtual const MMObjectVarExpr* getOwner() const { return nullptr; }

    /// The column of the model that was read last for what is evaluated first; null where none is
    /// known.
    virtual const MMTextColumn* findColumn(const MMModel& model) const;

    /// Appends the value, as a text, to a text that is being made, within the limits.
    virtual void appendText(MMEvaluationContext& context, std::string& text) const;

    /// True where all values are known beforehand to be of that kind.
    bool isAlways(MMValue::Kind kind) const { return kind_ == kind; }

private:
    std::optional<MMValue::Kind> kind_;
};

/// Makes a borrowed text the value's own, within the limits.
inline void ownText(MMEvaluationContext& context, MMValue& value) {
    if (value.isBorrowed()) {
        context.countCopy(value.getText().size());
        value.own();
    }
}

/// An expression that yields one object, or none.
class __attribute__((visibility("default"))) MMObjectExpr : public MMExpr {
public:
    explicit MMObjectExpr(Ownership ownership = Ownership::something) : MMExpr(ownership) {
        addBodyKinds(MM_KIND_OBJECT);
    }
    static bool classof(const OrvCyclicPtrBody& body, std::type_identity<MMObjectExpr> /*self*/) {
        return (body.getBodyKinds() & MM_KIND_OBJECT) != 0;
    }

    /// The object, or mmNoObject. Throws MMEvaluationError.
    virtual MMObject evaluate(MMEvaluationContext& context) const = 0;

private:
    void anchor() const override;
};

/// Takes the objects of a collection as they are found, so that counting, quantifiers and the like
/// need not have the whole collection. Made on the stack by the expression that needs it.
class MMObjectConsumer {
public:
    MMObjectConsumer() = default;
    MMObjectConsumer(const MMObjectConsumer&) = delete;
    MMObjectConsumer& operator=(const MMObjectConsumer&) = delete;

    /// Takes the next objects, in order; returns false when no more are wanted.
    virtual bool take(const MMObjectRange& objects) = 0;

protected:
    ~MMObjectConsumer() = default;
};

/// An expression that yields an ordered collection of objects.
class __attribute__((visibility("default"))) MMObjectCollectionExpr : public MMExpr {
public:
    explicit MMObjectCollectionExpr(Ownership ownership = Ownership::something)
        : MMExpr(ownership) {
        addBodyKinds(MM_KIND_OBJECT_COLLECTION);
    }
    static bool classof(const OrvCyclicPtrBody& body,
                        std::type_identity<MMObjectCollectionExpr> /*self*/) {
        return (body.getBodyKinds() & MM_KIND_OBJECT_COLLECTION) != 0;
    }

    /// Hands the objects to `consumer`, in order, each as soon as it is known, and no more of them
    /// than it wants; returns false when the consumer stopped. Throws MMEvaluationError.
    virtual bool forEach(MMEvaluationContext& context, MMObjectConsumer& consumer) const = 0;

    /// Sets `range` to the whole collection, where that lies in memory already or costs next to
    /// nothing: a range of the model's memory, of the expression's, or of `buffer`, which is empty.
    /// Returns false, and does nothing, where it does not. Throws MMEvaluationError.
    virtual bool findRange(MMEvaluationContext& context, MMObjectRange& range,
                           std::vector<MMObject>& buffer) const;
};

/// Hands the objects of a collection to a consumer whose class is known, as forEach() does; where
/// they lie in memory already, without a call between the collection and the consumer.
template <class Consumer>
bool forEachObject(MMEvaluationContext& context, const MMObjectCollectionExpr& collection,
                   Consumer& consumer) {
    std::vector<MMObject> buffer;
    MMObjectRange range;
    return collection.findRange(context, range, buffer) ? consumer.take(range)
                                                        : collection.forEach(context, consumer);
}

/// Takes the texts of a collection as they are made; the view is valid during the call.
class MMTextConsumer {
public:
    MMTextConsumer() = default;
    MMTextConsumer(const MMTextConsumer&) = delete;
    MMTextConsumer& operator=(const MMTextConsumer&) = delete;

    virtual void take(std::string_view text) = 0;

protected:
    ~MMTextConsumer() = default;
};

/// An expression that yields an ordered collection of strings.
class __attribute__((visibility("default"))) MMStringCollectionExpr : public MMExpr {
public:
    explicit MMStringCollectionExpr(Ownership ownership = Ownership::something)
        : MMExpr(ownership) {
        addBodyKinds(MM_KIND_STRING_COLLECTION);
    }
    static bool classof(const OrvCyclicPtrBody& body,
                        std::type_identity<MMStringCollectionExpr> /*self*/) {
        return (body.getBodyKinds() & MM_KIND_STRING_COLLECTION) != 0;
    }

    /// Hands the strings to `consumer`, in order. Throws MMEvaluationError.
    virtual void forEach(MMEvaluationContext& context, MMTextConsumer& consumer) const = 0;

private:
    void anchor() const override;
};
