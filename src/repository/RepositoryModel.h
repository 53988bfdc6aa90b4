// A model in memory, as a reader made it of a document: for expressions, and for tools.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "fliodram/MMModel.h"
#include "repository/InverseIndex.h"
#include "repository/ModelTables.h"
#include "repository/PathIndex.h"
#include "support/OrvOnce.h"

/// What the objects of one class have in the document.
struct ClassSummary {
    std::string_view name;
    std::size_t count = 0;                       // of its objects
    std::vector<std::string_view> attributes;    // sorted by name
    std::vector<std::string_view> associations;  // references and containments, sorted by name
};

/// The objects of one document.
///
/// Made by readModel(), owned by the host, never changed: any number of threads may evaluate on it
/// and ask it at once. All views and ranges that it gives live as long as the model. The objects
/// that operations take are those that this model gave, never mmNoObject, except where said.
///
/// To expressions an object has its attributes, references and containments, and these besides,
/// unless its class has a feature of that name:
/// - `parent` is the containing object, `children` are the contained objects in document order;
/// - `inverse:f` are the objects that refer to this one through their feature `f`, in document
///   order.
/// A name `x` that an object does not have (it has no value for it, nor does the metamodel declare
/// it for its class) means `ownedX`. Read as an attribute, an association is the names of its
/// objects, joined by ", ": the id where an object has no name, and the last step of the path where
/// a reference leaves the document. Several values of an attribute are joined likewise. An absent
/// attribute is the default of the metamodel, where one is given, else the empty text.
class RepositoryModel final : public MMModel {
public:
    /// Takes over what a builder has collected.
    explicit RepositoryModel(ModelTables tables);
    ~RepositoryModel() override;

    // What expressions ask; see MMModel.
    MMKey classKey(std::string_view name) const override;
    MMKey attributeKey(std::string_view name) const override;
    MMKey associationKey(std::string_view name) const override;
    std::string_view className(MMObject object) const override;
    std::string_view uid(MMObject object, std::string& buffer) const override;
    std::string_view attribute(MMObject object, MMKey attribute,
                               std::string& buffer) const override;
    std::string_view attributeWithin(MMEvaluationContext& context, MMObject object, MMKey attribute,
                                     std::string& buffer) const override;
    MMObjectRange targets(MMObject object, MMKey association,
                          std::vector<MMObject>& buffer) const override;
    MMObjectRange instances(MMObject object, MMKey classOfInstances,
                            std::vector<MMObject>& buffer) const override;
    MMObject outermost(MMObject object) const override;
    MMTextColumn classNameColumn(MMObject object) const override;
    MMTextColumn attributeColumn(MMObject object, MMKey attribute) const override;
    MMTargetColumn targetColumn(MMObject object, MMKey association) const override;

    /// The name under which the document was read, as messages show it.
    const std::string& sourceName() const { return tables_.source.name(); }
    /// The metamodel that it was read with, or null. Metamodel::features() tells what it declares
    /// for a class.
    const Metamodel* metamodel() const { return tables_.metamodel.get(); }

    /// All objects, in document order.
    MMObjectRange objects() const;
    std::size_t objectCount() const { return tables_.handles.size(); }
    /// The objects that no other contains, in document order; of a JSON document the one that it
    /// names as its root.
    MMObjectRange roots() const;
    /// The root of a number, mmNoObject past the last.
    MMObject root(std::size_t number) const;

    /// The classes that have objects, by falling number of objects, then by name.
    std::vector<ClassSummary> classes() const;
    /// True where the document has objects of exactly this class.
    bool hasClass(std::string_view name) const { return classKey(name) != mmUnknownKey; }
    /// The objects of exactly this class in document order; none for an unknown class.
    MMObjectRange instances(std::string_view name) const;

    /// The object with this id, the last in the document where several have it; or the object at
    /// the end of a path such as path() gives; else mmNoObject.
    MMObject find(std::string_view uid) const;

    /// The value of the attribute "name"; the empty text where the object has none.
    std::string_view name(MMObject object) const { return tables_.nameOf(object); }
    /// The containing object, or mmNoObject.
    MMObject container(MMObject object) const;
    /// Where the object begins in the document.
    TextPlace place(MMObject object) const;
    /// The path of the object from its root: "//@eClassifiers.3/@eOperations.0", or "/2/@a.1" from
    /// root 2. The uid of an object that has no id.
    std::string path(MMObject object) const;

private:
    // Keys with this bit are inverses of the feature that the other bits name.
    static constexpr MMKey inverseBit = 0x80000000U;
    static constexpr MMKey parentKey = 0;
    static constexpr MMKey childrenKey = 1;

    // What else the name of a feature may mean to an object that does not have it.
    struct Fallback {
        MMKey owned = mmUnknownKey;    // "ownedX" for "x"
        MMKey inverse = mmUnknownKey;  // "f" for "inverse:f"
        bool isAttribute = false;      // some class has it
        bool isAssociation = false;
        bool hasReferences = false;  // some class has it as an association that does not contain
    };

    class TextList;

    void noteKinds();
    void packNames();
    void prepareColumns();
    template <class Column>
    Column columnOf(MMObject object) const;
    bool isExclusive(MMKey key) const;
    const FeatureRecord* ownedFeature(const ClassRecord& owner, MMKey key) const;
    MMKey key(std::string_view name, bool Fallback::*isKnown) const;
    MMKey inverseOf(std::string_view name) const;
    bool isMeant(MMKey key, bool Fallback::*isKnown) const;
    MMObjectRange builtIn(MMObject object, MMKey key) const;
    MMObjectRange otherTargets(MMObject object, MMKey key, const FeatureRecord* feature) const;
    std::string_view read(MMObject object, MMKey attribute, TextList& list) const;
    std::string_view otherText(MMObject object, MMKey key, const FeatureRecord* feature,
                               TextList& list) const;
    std::string_view textOf(const FeatureRecord& feature, MMObject object, TextList& list) const;
    void appendTexts(const FeatureRecord& feature, MMObject object, TextList& list) const;
    std::string_view joinNames(const MMObjectRange& range, TextList& list) const;
    std::string_view label(MMObject object, std::string& buffer) const;
    static bool has(const FeatureRecord& feature, MMObject object);

    ModelTables tables_;
    std::vector<Fallback> fallbacks_;  // by key
    InverseIndex inverses_;
    mutable OrvOnce pathsOnce_;
    mutable std::unique_ptr<PathIndex> paths_;
};
