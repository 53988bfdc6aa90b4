// The interface through which a host shows its model to the expressions that it evaluates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// An object of the host's model: 64 bits of the host's choice, an index or a pointer. Two equal
/// handles are one object.
using MMObject = std::uint64_t;
/// No object: what a missing parent or the first element of nothing is.
inline constexpr MMObject mmNoObject = 0;

/// What a host makes of the name of a class, an attribute or an association, so that names are
/// looked up once an expression and not once an object.
using MMKey = std::uint32_t;
/// The key of a name that no object of the model has.
inline constexpr MMKey mmUnknownKey = 0xFFFFFFFFU;

/// A list of objects somewhere in the host's memory, from `first` up to but not including `last`.
struct MMObjectRange {
    const MMObject* first = nullptr;
    const MMObject* last = nullptr;
    /// Set it where no object is listed twice: evaluation then need not look.
    bool isDistinct = false;
    /// Of the targets of an association: set it where this association reaches none of them from
    /// any other object, as with what an object contains. Evaluation then need not remember them.
    bool isExclusive = false;

    const MMObject* begin() const { return first; }
    const MMObject* end() const { return last; }
    std::size_t size() const { return static_cast<std::size_t>(last - first); }
};

class MMEvaluationContext;
struct MMTextColumn;
struct MMTargetColumn;

/// A model as expressions see it. A host derives one class from this, over its own memory.
///
/// The operations are called only while an expression is evaluated, with objects that the host
/// handed out itself (never mmNoObject) and with keys that this model returned (never
/// mmUnknownKey). What an operation returns points into the host's memory and must stay valid
/// until the evaluation ends; where there is nothing to point to, the host fills the `buffer` that
/// it is given, which is empty and lives as long as the result is needed, and returns a view of it.
///
/// A model must not change while an expression is being evaluated. Several threads may evaluate
/// on one model at once if the host's operations allow that; they are all constant. An exception
/// that leaves an operation ends the evaluation with an MMEvaluationError of the same text; ending
/// the thread there, by pthread_exit() or a cancellation, ends the process.
class __attribute__((visibility("default"))) MMModel {
public:
    MMModel();
    MMModel(const MMModel&) = delete;
    MMModel& operator=(const MMModel&) = delete;
    virtual ~MMModel();

    /// The keys of names; mmUnknownKey for a name that the model does not have. Expressions keep
    /// the keys that they have asked for as long as identity() stays what it is.
    virtual MMKey classKey(std::string_view name) const = 0;
    virtual MMKey attributeKey(std::string_view name) const = 0;
    virtual MMKey associationKey(std::string_view name) const = 0;

    /// The name of the object's class.
    virtual std::string_view className(MMObject object) const = 0;

    /// The text that identifies the object, such as its id in a document.
    virtual std::string_view uid(MMObject object, std::string& buffer) const = 0;

    /// The value of an attribute as a text; the empty text where the object has none.
    virtual std::string_view attribute(MMObject object, MMKey attribute,
                                       std::string& buffer) const = 0;

    /// The same within the limits of an evaluation. For hosts that compose values of many pieces:
    /// before each piece they call context.countText() with the size of the buffer and that of the
    /// piece, which throws at a limit; what it throws must pass. Here, attribute(), whose buffer is
    /// held against the limits when it is filled.
    virtual std::string_view attributeWithin(MMEvaluationContext& context, MMObject object,
                                             MMKey attribute, std::string& buffer) const;

    /// The objects that an association reaches from the object, in the model's order.
    virtual MMObjectRange targets(MMObject object, MMKey association,
                                  std::vector<MMObject>& buffer) const = 0;

    /// All objects of exactly this class in the model that `object` belongs to, each once, in the
    /// model's order.
    virtual MMObjectRange instances(MMObject object, MMKey classOfInstances,
                                    std::vector<MMObject>& buffer) const = 0;

    /// The outermost object that contains `object`, or `object` itself.
    virtual MMObject outermost(MMObject object) const = 0;

    /// For hosts that keep the values of many objects side by side, and have called
    /// offerColumns(): the column (see MMColumn.h) with the object and the name of its class, an
    /// attribute or an association. Expressions read it instead of asking for each object, with the
    /// same result. It stays valid for as long as identity() stays what it is. Here, columns that
    /// know nothing.
    virtual MMTextColumn classNameColumn(MMObject object) const;
    virtual MMTextColumn attributeColumn(MMObject object, MMKey attribute) const;
    virtual MMTargetColumn targetColumn(MMObject object, MMKey association) const;
    bool hasColumns() const { return hasColumns_; }

    /// A number that no other model of this process has, and that changes with renewKeys().
    std::uint64_t identity() const { return identity_; }

protected:
    /// To be called by a host whose keys no longer mean what they meant, or whose columns moved.
    void renewKeys();
    /// To be called, once, by a host that has columns.
    void offerColumns() { hasColumns_ = true; }

private:
    std::uint64_t identity_;
    bool hasColumns_ = false;
};
