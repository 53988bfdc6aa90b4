// Collects what a reader finds in a document, and makes the model of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "repository/ModelTables.h"

class ReferenceResolver;
class RepositoryModel;

/// Takes the objects of a document in document order, each before what it contains, and their
/// features in the order in which they stand; then decides what is a reference and links it.
///
/// Used once by one reader, on its stack. When finish() or a reader throws, everything that was
/// collected goes with the builder.
class ModelBuilder {
public:
    /// How the texts of references are read.
    enum class References {
        /// Tokens separated by white space, ids and paths; what resolves to nothing is no error.
        /// An XML attribute is a reference if the metamodel or the whole document says so.
        tokens,
        /// One id each, which must be known, once in the document. Attributes are attributes.
        exactIds
    };

    ModelBuilder(SourceText source, std::shared_ptr<const Metamodel> metamodel,
                 References references);
    ModelBuilder(const ModelBuilder&) = delete;
    ModelBuilder& operator=(const ModelBuilder&) = delete;
    ~ModelBuilder();

    SourceText& source() { return tables_.source; }
    TextStore& texts() { return tables_.texts; }

    /// Makes room for so many objects.
    void reserve(std::size_t objectCount);

    /// The numbers of names; `name` must live as long as the text.
    std::uint32_t classNumber(std::string_view name);
    MMKey feature(std::string_view name) { return tables_.featureNames.intern(name); }
    std::string_view className(std::uint32_t number) const {
        return tables_.classNames.name(number);
    }
    std::string_view featureName(MMKey feature) const { return tables_.featureNames.name(feature); }

    /// The class of objects that `feature` of objects of a class contains, when they do not say:
    /// from the metamodel, from the table of UML 2 and Ecore, or the capitalised name.
    std::uint32_t containedClass(std::uint32_t ownerClass, MMKey feature);

    /// A new object that nothing contains, or one that `owner` contains, beginning at an offset.
    MMObject addObject(std::uint32_t classNumber, std::size_t offset);
    MMObject addContained(MMObject owner, MMKey feature, std::uint32_t classNumber,
                          std::size_t offset);
    /// Makes an object the next root.
    void addRoot(MMObject object);
    /// Makes the object with an id the one root; it may be added later.
    void setRoot(TextRef id) { rootId_ = id; }
    void setId(MMObject object, TextRef id) { tables_.records[tables_.number(object)].id = id; }

    /// The value of an XML attribute, be it an attribute or a reference.
    void addAttribute(MMObject object, MMKey feature, TextRef value);
    /// A value of an attribute, one more if it has some.
    void addValue(MMObject object, MMKey feature, TextRef value);
    /// A reference, for certain.
    void addReference(MMObject object, MMKey feature, TextRef text);
    /// The object has this association, be it without targets.
    void addAssociation(MMObject object, MMKey feature);

    /// The model of everything that was added; the builder is empty after that.
    std::unique_ptr<RepositoryModel> finish();

private:
    // What was collected for one feature of one class.
    struct FeatureLog {
        ValueColumn attributes;         // of XML attributes
        std::vector<OwnedText> values;  // beside them
        std::vector<Link> links;        // contained objects, and references by text
        std::uint32_t containedClass = NameTable::none;
        bool hasReferences = false;  // among the links
    };

    std::string_view containedClassName(std::uint32_t ownerClass, MMKey feature);
    FeatureLog& log(std::uint32_t classNumber, MMKey feature);
    std::uint32_t addFeature(std::uint32_t classNumber, MMKey feature);
    bool isReference(std::uint32_t classNumber, MMKey feature, const FeatureLog& log,
                     ReferenceResolver& resolver);
    bool resolveAll(const ValueColumn& column, bool isCertain, ReferenceResolver& resolver);
    std::vector<Link>& allLinks(FeatureLog& log, ReferenceResolver& resolver);
    void numberPositions();
    void listChildren();
    void indexIds();
    void findRoot(const ReferenceResolver& resolver);
    void settleNames();
    void settle(std::uint32_t classNumber, std::uint32_t number, ReferenceResolver& resolver);
    void settleValues(FeatureRecord& record, FeatureLog& log, std::size_t objectCount);
    ValueColumn merge(const ValueColumn& first, std::vector<OwnedText> second);
    void listInstances(std::uint32_t classNumber);
    void declareFeatures(std::uint32_t classNumber);

    ModelTables tables_;
    References references_;
    std::vector<std::vector<FeatureLog>> logs_;  // by class and number within the class
    std::vector<TextRef> referenceTexts_;
    TextRef rootId_;
    std::vector<Link> links_;  // of the feature that is being settled
};
