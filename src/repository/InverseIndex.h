// The objects that refer to an object through a feature.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
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
    /// The columns of the targets: by class, else those of some classes with an empty one behind.
    class Columns {
    public:
        Columns() = default;
        Columns(std::size_t classCount, std::size_t linkCount);

        void add(std::uint32_t classNumber, TargetColumn column);
        const TargetColumn& of(std::uint32_t classNumber) const {
            return columns_[isDense_ ? classNumber : findPlace(classNumber)];
        }

    private:
        std::size_t findPlace(std::uint32_t classNumber) const;

        bool isDense_ = false;  // a column for every class
        std::vector<TargetColumn> columns_;
        std::vector<std::uint32_t> classes_;  // of the columns, when not every class has one
    };
    struct Inverse {
        OrvOnce once;
        Columns columns;
    };
    struct Pair {
        MMObject target;
        ObjectNumber source;
        auto operator<=>(const Pair& other) const = default;
    };

    void build(MMKey feature, Inverse& inverse) const;
    std::vector<Pair> gather(MMKey feature) const;
    TargetColumn columnOf(std::uint32_t classNumber, std::span<const Pair> pairs) const;

    const ModelTables& tables_;
    std::unique_ptr<Inverse[]> inverses_;  // by feature
};
