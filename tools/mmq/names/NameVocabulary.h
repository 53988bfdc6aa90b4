// The names that the objects of models can have: of classes, attributes and associations.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "names/DeclaredNames.h"

namespace mmq {

/// What a name is read as: every name can be read as an attribute, of associations it gives names.
enum class ReadAs { attribute, association };

/// Before the name of an association: what leads back.
inline constexpr std::string_view inversePrefix = "inverse:";

/// Knows which class of object has which names, and which classes its associations reach.
///
/// Made of what documents show and of what metamodels declare: those that it is given, and UML or
/// Ecore where a model is of theirs. A name counts where models give it a meaning: `parent`,
/// `children` and `inverse:f` are there of themselves, and `x` means `ownedX` too.
///
/// What is not known for certain is answered generously: an association whose targets are not known
/// reaches every class, and an object of a class of another document has every name. Borrows the
/// models and the metamodels. Looks into the models when it is asked, and remembers what it found:
/// it belongs to one thread at a time.
class NameVocabulary {
public:
    /// Adds what a metamodel declares, before the models that it is of; messages call it `name`.
    void addMetamodel(const Metamodel& metamodel, const std::string& name);
    /// Adds what a model shows, and its metamodel.
    void addModel(const RepositoryModel& model);

    bool hasModel() const { return !models_.empty(); }
    /// What messages call the whole of it: the name of the one document, or "the models".
    std::string subject() const;

    /// The classes that objects may have; those of the outermost objects.
    const ClassSet& allClasses() const { return declared_.known(); }
    /// Those that objects of the models have.
    const ClassSet& shownClasses() const { return shown_; }
    const ClassSet& rootClasses() const { return roots_.isEmpty() ? allClasses() : roots_; }
    /// Whether every model is of a metamodel that is known: then a class that is not found is none.
    bool knowsAllClasses() const { return knowsAllClasses_; }
    /// The class of a name: of the models and metamodels; where there is a model, of UML and Ecore.
    std::optional<ClassNumber> findClass(const std::string& name) const;
    /// Whether there is one whose name differs by no more than the case of letters.
    bool hasClassInAnyCase(const std::string& name) const;
    /// Those of several names that there are.
    ClassSet findClasses(const std::vector<std::string>& names) const;
    const std::string& className(ClassNumber number) const {
        return declared_.graph().name(number);
    }

    /// Whether objects of one of the classes can have the name.
    bool has(const ClassSet& classes, std::string_view name, ReadAs readAs) const;
    /// Whether objects of one of the classes may have a name that no document shows them to have:
    /// no metamodel declares the class, and other objects have the name.
    bool mayHave(const ClassSet& classes, std::string_view name, ReadAs readAs) const;
    /// Why documents do not hold what objects of these classes have under a name, where they do
    /// not.
    LeftOut findLeftOut(const ClassSet& classes, std::string_view name) const;
    /// The classes that an association of objects of these classes reaches; all where that is not
    /// known.
    ClassSet reach(const ClassSet& classes, std::string_view association) const;

    /// The classes of the objects that it reaches in the models.
    ClassSet shownReach(const ClassSet& classes, std::string_view association) const;

    /// The names that objects of one of the classes can have, short forms included.
    std::vector<std::string> names(const ClassSet& classes, ReadAs readAs) const;
    /// Of attributes, or of associations, those that objects of one of the classes have in the
    /// models.
    std::vector<std::string> shownNames(const ClassSet& classes, ReadAs kind) const;
    /// The associations that reach one of the classes, which `inverse:` may stand before.
    std::vector<std::string> inverses(const ClassSet& classes) const;
    std::vector<std::string> classNames() const;
    /// The classes that have a name and do not inherit it, in the order of the alphabet; of
    /// "inverse:x", those that "x" reaches.
    std::vector<std::string> classesWith(std::string_view name, ReadAs readAs) const;

private:
    // Some classes, and all that they inherit from.
    struct Heirs {
        const ClassSet& classes;
        ClassSet all;

        bool have(const NameDeclaration& declaration) const {
            return (declaration.isShown ? classes : all).contains(declaration.owner);
        }
        bool areUnknown() const { return all.contains(DeclaredNames::anything); }
    };

    struct ShownModel {
        const RepositoryModel* model;
        std::unordered_map<const char*, ClassNumber> numbers;  // by the model's text of the name
    };

    Heirs heirs(const ClassSet& classes) const {
        return {classes, declared_.graph().withSupertypes(classes)};
    }
    bool isBuiltIn(const Heirs& heirs, std::string_view name) const;
    ClassSet inverseOwners(const Heirs& heirs, std::string_view feature) const;
    bool mayReach(const NameDeclaration& declaration, const Heirs& heirs,
                  std::string_view feature) const;
    ClassSet declaredReach(const Heirs& heirs, std::string_view association) const;
    ClassSet declaredContainment(const Heirs& heirs, bool ofContainers) const;
    ClassSet withHeirs(const ClassSet& types) const;
    ClassSet ownersOf(std::string_view name, ReadAs readAs) const;
    const ClassSet& shownReach(ClassNumber number, std::string_view association) const;

    bool isOfStandard(const RepositoryModel& model) const;

    DeclaredNames declared_;
    bool knowsAllClasses_ = true;
    std::vector<const Metamodel*> metamodels_;
    std::string metamodelName_;
    std::vector<ShownModel> models_;
    ClassSet shown_;  // the classes that have objects
    ClassSet roots_;
    mutable std::map<std::pair<ClassNumber, std::string>, ClassSet> reaches_;
};

}  // namespace mmq
