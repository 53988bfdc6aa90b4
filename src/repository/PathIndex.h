// Finds objects by their paths in the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "repository/KeyedHash.h"
#include "repository/ModelTables.h"

/// The contained objects of a document by container and name, and by container, feature and place.
///
/// Two hash tables over all objects, made in one pass. Reads the tables it was made of, which must
/// outlive it; constant operations may be called from any thread.
class PathIndex {
public:
    /// The objects' names, children and positions must be known.
    explicit PathIndex(const ModelTables& tables);

    /// The object at the end of a path, or mmNoObject.
    ///
    /// A path begins with "/" and the number of a root, which may be left out for root 0. Its
    /// steps follow, each behind a "/": "@feature.3", where ".0" may be left out, or the name of
    /// the object, the first where several have it. "/" and "/0" are root 0 itself.
    MMObject find(std::string_view path) const;

private:
    ObjectNumber findRoot(std::string_view number) const;
    ObjectNumber findStep(ObjectNumber container, std::string_view step) const;
    template <class IsWanted>
    static std::size_t slotOf(const std::vector<ObjectNumber>& slots, std::uint64_t hash,
                              const IsWanted& isWanted);
    std::size_t slotOfName(ObjectNumber container, std::string_view name) const;
    std::size_t slotOfPlace(ObjectNumber container, MMKey feature, std::uint32_t position) const;

    const ModelTables& tables_;
    KeyedHash hash_;
    std::vector<ObjectNumber> byName_;
    std::vector<ObjectNumber> byPlace_;
};
