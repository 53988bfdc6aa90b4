#include "names/DeclaredNames.h"

#include <algorithm>

#include "names/NearestNames.h"
#include "names/StandardMetamodels.h"

namespace mmq {

namespace {

constexpr const char* everyClass = "EObject";

LeftOut leftOutOf(const MetamodelFeature& feature) {
    return feature.isStored      ? LeftOut::no
           : feature.isContainer ? LeftOut::container
                                 : LeftOut::derived;
}

}  // namespace

DeclaredNames::DeclaredNames() {
    graph_.add("");
    graph_.add(everyClass);
    ecore_ = addClasses(standardClasses(StandardMetamodel::ecore));
    uml_ = addClasses(standardClasses(StandardMetamodel::uml));
    addStereotypes();
}

// An application of a stereotype, whose class some profile declares, refers to its element by
// "base_" and the name of a metaclass.
void DeclaredNames::addStereotypes() {
    for (const auto& [name, number] : uml_) {
        NameDeclaration declaration;
        declaration.owner = anything;
        declaration.isAssociation = true;
        declaration.type = number;
        all_["base_" + name].push_back(declaration);
    }
}

// Numbers the classes first, since they name each other.
DeclaredNames::Classes DeclaredNames::addClasses(const std::vector<MetamodelClass>& classes) {
    Classes added;
    std::vector<ClassNumber> numbers;
    for (const MetamodelClass& declared : classes) {
        numbers.push_back(graph_.add(declared.name));
        added.emplace(declared.name, numbers.back());
    }
    for (std::size_t i = 0; i < classes.size(); ++i) {
        for (const auto* names : {&classes[i].supertypes, &classes[i].outsideSupertypes}) {
            for (const std::string& name : *names) {
                graph_.addSupertype(numbers[i], resolve(name, added));
            }
        }
        addFeatures(numbers[i], classes[i], added);
    }
    return added;
}

void DeclaredNames::addFeatures(ClassNumber owner, const MetamodelClass& declared,
                                const Classes& others) {
    for (const MetamodelFeature& feature : declared.features) {
        NameDeclaration declaration;
        declaration.owner = owner;
        declaration.isAssociation = feature.kind != MetamodelFeature::Kind::attribute;
        declaration.isContainment = feature.kind == MetamodelFeature::Kind::containment;
        declaration.leftOut = leftOutOf(feature);
        declaration.type = declaration.isAssociation ? resolve(feature.type, others) : anything;
        all_[feature.name].push_back(declaration);
    }
}

// The class that a metamodel means by a name: its own, or what it takes from Ecore. Whatever else
// it takes from other documents may have any names.
ClassNumber DeclaredNames::resolve(const std::string& name, const Classes& own) const {
    if (name == everyClass) {
        return everything;
    }
    for (const Classes* classes : {&own, &ecore_}) {
        const auto found = classes->find(name);
        if (found != classes->end()) {
            return found->second;
        }
    }
    return anything;
}

ClassNumber DeclaredNames::findStandard(const std::string& name) const {
    for (const Classes* standard : {&uml_, &ecore_}) {
        const auto found = standard->find(name);
        if (found != standard->end()) {
            return found->second;
        }
    }
    return anything;
}

bool DeclaredNames::hasStandardInAnyCase(const std::string& name) const {
    const auto has = [sought = lowerCase(name)](const Classes& classes) {
        return std::any_of(classes.begin(), classes.end(), [&sought](const auto& entry) {
            return lowerCase(entry.first) == sought;
        });
    };
    return has(uml_) || has(ecore_);
}

void DeclaredNames::makeKnown(const Classes& classes) {
    for (const auto& [name, number] : classes) {
        if (byName_.emplace(name, number).second) {
            known_.insert(number);
        }
    }
}

void DeclaredNames::addMetamodel(const Metamodel& metamodel) {
    makeKnown(addClasses(metamodel.classes()));
}

void DeclaredNames::addModel(const RepositoryModel& model) {
    applyStandard(model);
    for (const ClassSummary& summary : model.classes()) {
        addShown(summary);
    }
}

void DeclaredNames::applyStandard(const RepositoryModel& model) {
    for (const MMObject root : model.roots()) {
        const std::string name(model.className(root));
        if (byName_.count(name) > 0) {
            return;  // of a metamodel that is known already
        }
        for (const Classes* standard : {&uml_, &ecore_}) {
            if (standard->count(name) > 0) {
                makeKnown(*standard);
                return;
            }
        }
    }
}

void DeclaredNames::addShown(const ClassSummary& summary) {
    const auto [place, isNew] = byName_.emplace(summary.name, anything);
    if (isNew) {
        place->second = graph_.add(place->first);
        known_.insert(place->second);
        onlyShown_.insert(place->second);
    }
    for (const auto* names : {&summary.attributes, &summary.associations}) {
        for (const std::string_view name : *names) {
            NameDeclaration declaration;
            declaration.owner = place->second;
            declaration.isShown = true;
            declaration.isAssociation = names == &summary.associations;
            all_[std::string(name)].push_back(declaration);
        }
    }
}

const std::vector<NameDeclaration>& DeclaredNames::find(std::string_view name) const {
    static const std::vector<NameDeclaration> none;
    const auto found = all_.find(name);
    return found != all_.end() ? found->second : none;
}

}  // namespace mmq
