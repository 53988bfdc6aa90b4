// The classes that models and metamodels have, and what each declares or shows.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "names/ClassGraph.h"
#include "repository/Metamodel.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// Why documents do not hold a feature.
enum class LeftOut { no, derived, container };

/// What one class declares, or shows in a document, under one name.
struct NameDeclaration {
    ClassNumber owner = 0;
    bool isShown = false;  ///< by a document; then its heirs have it only if they show it, too
    bool isAssociation = false;
    bool isContainment = false;
    LeftOut leftOut = LeftOut::no;
    ClassNumber type = 0;  ///< of an association that is declared
};

/// Collects classes and their features from metamodels and documents. UML and Ecore are always
/// there, for names that lead out of a metamodel, but objects are taken to have their classes only
/// where a document is one of theirs.
class DeclaredNames {
public:
    using Declarations = std::map<std::string, std::vector<NameDeclaration>, std::less<>>;

    /// Stands for the classes of other documents, of which nothing is known.
    static constexpr ClassNumber anything = 0;
    /// What every class inherits from without saying so.
    static constexpr ClassNumber everything = 1;

    DeclaredNames();

    void addMetamodel(const Metamodel& metamodel);
    /// Adds UML or Ecore where the first outermost object that either knows is of one of its
    /// classes, and what the document shows.
    void addModel(const RepositoryModel& model);

    const ClassGraph& graph() const { return graph_; }
    /// The classes that objects may have; of several with one name, the first that was added.
    const ClassSet& known() const { return known_; }
    /// Those of them that no metamodel declares, of which documents show a part.
    const ClassSet& onlyShown() const { return onlyShown_; }
    const std::map<std::string, ClassNumber>& byName() const { return byName_; }
    /// The class of a name in UML or Ecore; `anything` where neither has it.
    ClassNumber findStandard(const std::string& name) const;
    /// Whether either has a class of this name, whatever the case of its letters.
    bool hasStandardInAnyCase(const std::string& name) const;

    const Declarations& all() const { return all_; }
    const std::vector<NameDeclaration>& find(std::string_view name) const;

private:
    using Classes = std::map<std::string, ClassNumber>;

    void addStereotypes();
    Classes addClasses(const std::vector<MetamodelClass>& classes);
    void addFeatures(ClassNumber owner, const MetamodelClass& declared, const Classes& others);
    ClassNumber resolve(const std::string& name, const Classes& own) const;
    void makeKnown(const Classes& classes);
    void applyStandard(const RepositoryModel& model);
    void addShown(const ClassSummary& summary);

    ClassGraph graph_;
    Declarations all_;
    Classes uml_;
    Classes ecore_;
    Classes byName_;
    ClassSet known_;
    ClassSet onlyShown_;
};

}  // namespace mmq
