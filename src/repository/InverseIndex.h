// The objects that refer to an object through a feature.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "repository/ModelTables.h"
#include "support/OrvOnce.h"

/// Associations backwards, each worked out when it is first asked for.
///
/// An inverse has a place for every class of the model where it has many links, else only for those
/// that it leads from. Reads the tables it was made of, which must outlive it. Any number of
/// threads may ask at once.
class InverseIndex {
public:
    explicit InverseIndex(const ModelTables& tables);
    InverseIndex(const InverseIndex&) = delete;
    InverseIndex& operator=(const InverseIndex&) = delete;
    ~InverseIndex();

    /// Works the inverse of a feature out, unless that was done before.
    void prepare(MMKey feature) const;

    /// The objects that refer to `target` through a feature that was prepared, each once, in
    /// document order.
    MMObjectRange at(MMKey feature, MMObject target) const;

private:
    struct Inverse {
        OrvOnce once;
        bool isDense = false;                // a column for every class
        std::vector<TargetColumn> columns;   // by class of the targets; else an empty one behind
        std::vector<std::uint32_t> classes;  // of the columns, when not every class has one

        std::size_t findPlace(std::uint32_t classNumber) const;
    };
    struct Pair {
        MMObject target;
        ObjectNumber source;
    };

    void build(MMKey feature, Inverse& inverse) const;
    std::vector<Pair> gather(MMKey feature) const;

    const ModelTables& tables_;
    std::unique_ptr<Inverse[]> inverses_;  // by feature
};
