// The targets of one association for all objects of one class.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "fliodram/MMColumn.h"
#include "repository/TextRef.h"

/// One step along an association: to an object, or with mmNoObject to something that is not in
/// the document and only has a text.
struct Link {
    MMObject target = mmNoObject;
    std::uint32_t owner = 0;  // the source, by its number among the objects of its class
    std::uint32_t text = 0;   // of a link without a target: its number in a list of texts
};

/// The objects that one association reaches from each object of a class, as ranges of one list.
///
/// Offsets into the list stand in a place for every object where many have targets, else beside
/// the numbers of those that have. Built once of all links. Owned by the class's record; constant
/// operations may be called from any thread.
class TargetColumn {
public:
    /// A reference out of the document, or to nothing.
    struct Outside {
        std::uint32_t owner;
        std::uint32_t before;  // how many targets of the same owner come before it
        TextRef text;
    };

    TargetColumn() = default;
    /// Of links in any order, those of one owner in the order of their targets; `links` comes back
    /// ordered by owner. `texts` is what the links without a target count.
    TargetColumn(std::vector<Link>& links, const std::vector<TextRef>& texts,
                 std::size_t objectCount);

    MMObjectRange at(std::uint32_t owner) const {
        std::size_t place = owner;
        if (!owners_.empty()) {
            place = findPlace(owner);
        }
        if (place + 1 >= offsets_.size()) {
            return {};
        }
        return {targets_.data() + offsets_[place], targets_.data() + offsets_[place + 1],
                isDistinct_};
    }

    /// The references of an object that lead out of the document, in order.
    struct OutsideRange {
        const Outside* first;
        const Outside* last;
        const Outside* begin() const { return first; }
        const Outside* end() const { return last; }
        bool empty() const { return first == last; }
    };
    OutsideRange outsideAt(std::uint32_t owner) const;

    /// All objects that are reached, those of one owner behind those of the one before it.
    const std::vector<MMObject>& targets() const { return targets_; }
    bool empty() const { return targets_.empty() && outside_.empty(); }

    /// Fills in what a column of the model shows to expressions.
    void show(MMTargetColumn& column) const;

private:
    void beginRange(std::uint32_t owner, bool isDense);
    std::size_t addRange(const std::vector<Link>& links, std::size_t i,
                         const std::vector<TextRef>& texts);
    std::size_t findPlace(std::uint32_t owner) const;

    std::vector<MMObject> targets_;
    std::vector<std::uint32_t> offsets_;
    std::vector<std::uint32_t> owners_;  // of the offsets, when not every object has a place
    std::vector<Outside> outside_;
    bool isDistinct_ = true;
};
