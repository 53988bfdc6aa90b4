// What an in-memory model consists of: its texts, names, objects, columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "fliodram/MMModel.h"
#include "repository/FeatureMap.h"
#include "repository/IdTable.h"
#include "repository/Metamodel.h"
#include "repository/NameTable.h"
#include "repository/SourceText.h"
#include "repository/TargetColumn.h"
#include "repository/TextRef.h"
#include "repository/ValueColumn.h"

/// The number of an object in document order; NameTable::none is no object.
using ObjectNumber = std::uint32_t;

/// What is known of an object beside its features.
struct ObjectRecord {
    TextRef id;
    ObjectNumber container = NameTable::none;
    std::uint32_t offset = 0;  // of its first byte in the text
    /// The containing feature and the place among its objects; a root's number among the roots.
    MMKey feature = mmUnknownKey;
    std::uint32_t position = 0;
    /// Its contained objects, as a range of ModelTables::children.
    std::uint32_t firstChild = 0;
    std::uint32_t childCount = 0;
};

/// A feature of one class: an attribute, a reference, a containment, or some of each.
struct FeatureRecord {
    MMKey name = mmUnknownKey;
    ValueColumn values;
    TargetColumn targets;
    /// Set where the metamodel declares it; then absent values read as the default.
    const MetamodelFeature* declared = nullptr;
    /// What the document shows it to be.
    bool isAttribute = false;
    bool isAssociation = false;
    bool isContainment = false;  // an association that reaches only what the object contains
};

/// A class that has objects.
struct ClassRecord {
    std::vector<ObjectNumber> objects;  // by index within the class
    std::vector<MMObject> instances;    // their handles
    std::vector<FeatureRecord> features;
    FeatureMap featureNumbers;
    std::uint32_t nameFeature = FeatureMap::none;  // the feature called "name"

    const FeatureRecord* find(MMKey key) const {
        const std::uint32_t number = featureNumbers.find(key);
        return number == FeatureMap::none ? nullptr : &features[number];
    }
};

/// The data of a model, filled by ModelBuilder and asked through RepositoryModel.
///
/// A handle is the number of its class plus one, and in its lower half the object's index within
/// the class. Owned by one of the two; only moved. Views into it stay valid when it is.
struct ModelTables {
    explicit ModelTables(SourceText text) : source(std::move(text)), texts(source.data()) {}

    static MMObject handle(std::uint32_t classNumber, std::uint32_t index) {
        return (static_cast<MMObject>(classNumber) + 1) << 32U | index;
    }
    static std::uint32_t classNumber(MMObject object) {
        return static_cast<std::uint32_t>(object >> 32U) - 1;
    }
    static std::uint32_t index(MMObject object) { return static_cast<std::uint32_t>(object); }

    const ClassRecord& classOf(MMObject object) const { return classes[classNumber(object)]; }
    ObjectNumber number(MMObject object) const { return classOf(object).objects[index(object)]; }
    const ObjectRecord& record(MMObject object) const { return records[number(object)]; }

    /// The value of the attribute "name"; empty where the object has none.
    std::string_view nameOf(MMObject object) const;
    /// The contained objects in document order.
    MMObjectRange childrenOf(ObjectNumber number) const;

    SourceText source;
    TextStore texts;
    std::shared_ptr<const Metamodel> metamodel;
    NameTable classNames;
    NameTable featureNames;
    std::vector<ClassRecord> classes;   // by number of the name
    std::vector<ObjectRecord> records;  // in document order
    std::vector<MMObject> handles;      // in document order
    std::vector<MMObject> children;
    std::vector<MMObject> roots;
    IdTable ids;
    /// Every object belongs to the first root, as if that contained it.
    bool hasOneRoot = false;
};
