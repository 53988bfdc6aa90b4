// The classes and features that an Ecore file declares.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class RepositoryModel;

/// What a class declares under one name.
struct MetamodelFeature {
    enum class Kind { attribute, reference, containment };

    std::string name;
    Kind kind = Kind::attribute;
    /// The name of the type's class, data type or enumeration; empty where none is declared.
    std::string type;
    /// What an absent attribute reads as; empty where the file says nothing.
    std::string defaultText;
    /// True where an object may have more than one.
    bool isMany = false;
    /// True of a reference to the containing object.
    bool isContainer = false;
    /// False where documents leave it out: a container, or what is worked out of other features.
    bool isStored = true;
};

/// A class with what it declares itself.
struct MetamodelClass {
    std::string name;
    bool isAbstract = false;
    std::vector<std::string> supertypes;
    /// The names of supertypes that stand in other documents.
    std::vector<std::string> outsideSupertypes;
    std::vector<MetamodelFeature> features;
};

/// A metamodel: from it a reader learns which XML attributes are references, of which class an
/// object is that does not say so, and what an absent attribute reads as.
///
/// Never changes after it is read; shared by the models that were read with it, and by any number
/// of threads. Classes are known by their names alone: where two packages of the file declare the
/// same name, the first is meant.
class Metamodel {
public:
    /// Reads an Ecore document (`.ecore`): EClass objects with their eSuperTypes and
    /// eStructuralFeatures, in any number of nested packages. Supertypes that stand in other
    /// documents are not followed. Throws ModelError where the file cannot be read, declares no
    /// class, or so many that with all they inherit they have more than a million features.
    static std::shared_ptr<const Metamodel> readFile(const std::string& path);
    /// The same from a document in memory, called `name` in messages.
    static std::shared_ptr<const Metamodel> readText(std::string_view text,
                                                     const std::string& name);

    /// The class of a name, or null.
    const MetamodelClass* findClass(std::string_view name) const;

    /// What a class has under a name, declared by itself or by the nearest of its supertypes; null
    /// for an unknown class or feature.
    const MetamodelFeature* findFeature(std::string_view className, std::string_view feature) const;

    /// All that a class has, inherited features included, sorted by name; of the same name what
    /// findFeature() gives. Empty for an unknown class.
    const std::vector<const MetamodelFeature*>& features(std::string_view className) const;

    /// All classes, in the order of the file.
    const std::vector<MetamodelClass>& classes() const { return classes_; }

private:
    using Features = std::vector<const MetamodelFeature*>;

    explicit Metamodel(std::vector<MetamodelClass> classes);

    static std::shared_ptr<const Metamodel> make(const RepositoryModel& document);
    bool gatherAll();
    static Features gather(const std::vector<const MetamodelClass*>& classes);

    std::vector<MetamodelClass> classes_;
    std::map<std::string_view, std::size_t> numbers_;
    std::vector<Features> allFeatures_;  // of each class, sorted by name
};
