#include "repository/Metamodel.h"

#include <algorithm>
#include <set>
#include <utility>

#include "repository/ModelReader.h"
#include "repository/RepositoryModel.h"

namespace {

// Inheritance multiplies what a file declares; more than this no metamodel has.
constexpr std::size_t mostFeatures = 1'000'000;

// Reads the declarations out of an Ecore document.
class EcoreDocument {
public:
    explicit EcoreDocument(const RepositoryModel& model) : model_(model) {}

    std::vector<MetamodelClass> classes() const {
        std::vector<MetamodelClass> result;
        for (const MMObject object : model_.instances("EClass")) {
            result.push_back(readClass(object));
        }
        return result;
    }

private:
    std::string text(MMObject object, std::string_view attribute) const {
        const MMKey key = model_.attributeKey(attribute);
        std::string buffer;
        return key == mmUnknownKey ? std::string()
                                   : std::string(model_.attribute(object, key, buffer));
    }
    MMObjectRange targets(MMObject object, std::string_view association) const {
        const MMKey key = model_.associationKey(association);
        std::vector<MMObject> buffer;
        return key == mmUnknownKey ? MMObjectRange() : model_.targets(object, key, buffer);
    }

    MetamodelClass readClass(MMObject object) const {
        MetamodelClass result;
        result.name = text(object, "name");
        result.isAbstract = text(object, "abstract") == "true";
        for (const MMObject supertype : targets(object, "eSuperTypes")) {
            result.supertypes.push_back(text(supertype, "name"));
        }
        result.outsideSupertypes = namesOutside(text(object, "eSuperTypes"), result.supertypes);
        for (const MMObject generic : targets(object, "eGenericSuperTypes")) {
            result.supertypes.push_back(text(generic, "eClassifier"));
        }
        for (const MMObject feature : targets(object, "eStructuralFeatures")) {
            result.features.push_back(readFeature(feature));
        }
        return result;
    }

    // Of the names in a list, those that are none of the others, in the order of the list.
    static std::vector<std::string> namesOutside(std::string_view list,
                                                 const std::vector<std::string>& others) {
        constexpr std::string_view separator = ", ";
        const std::set<std::string_view> known(others.begin(), others.end());
        std::vector<std::string> result;
        while (!list.empty()) {
            const std::string_view name = list.substr(0, list.find(separator));
            list.remove_prefix(std::min(name.size() + separator.size(), list.size()));
            if (!known.contains(name)) {
                result.emplace_back(name);
            }
        }
        return result;
    }

    bool isContainer(MMObject reference) const {
        const MMObjectRange opposites = targets(reference, "eOpposite");
        return std::any_of(opposites.begin(), opposites.end(), [this](MMObject opposite) {
            return text(opposite, "containment") == "true";
        });
    }

    MetamodelFeature readFeature(MMObject object) const {
        MetamodelFeature result;
        result.name = text(object, "name");
        if (model_.className(object) == "EReference") {
            result.kind = text(object, "containment") == "true"
                              ? MetamodelFeature::Kind::containment
                              : MetamodelFeature::Kind::reference;
        }
        result.type = text(object, "eType");
        for (const MMObject generic : targets(object, "eGenericType")) {
            result.type = text(generic, "eClassifier");
        }
        result.defaultText = text(object, "defaultValueLiteral");
        const std::string upper = text(object, "upperBound");
        result.isContainer = isContainer(object);
        result.isStored = !result.isContainer && text(object, "transient") != "true";
        result.isMany = !upper.empty() && upper != "0" && upper != "1";
        return result;
    }

    const RepositoryModel& model_;
};

// Who inherits from whom, each name looked up once.
class Inheritance {
public:
    explicit Inheritance(const Metamodel& metamodel)
        : classes_(metamodel.classes()), supertypes_(classes_.size()), seenFrom_(classes_.size()) {
        for (std::size_t number = 0; number < classes_.size(); ++number) {
            addSupertypes(number, metamodel);
        }
    }

    // The class and its supertypes, the nearer ones first, each once; good until the next call.
    const std::vector<const MetamodelClass*>& withSupertypes(std::size_t start) {
        result_.clear();
        add(start, start);
        for (std::size_t i = 0; i < result_.size(); ++i) {
            for (const std::size_t supertype : supertypes_[numberOf(result_[i])]) {
                add(supertype, start);
            }
        }
        return result_;
    }

private:
    std::size_t numberOf(const MetamodelClass* declared) const {
        return static_cast<std::size_t>(declared - classes_.data());
    }

    void addSupertypes(std::size_t number, const Metamodel& metamodel) {
        std::set<std::string_view> seen;
        for (const std::string& name : classes_[number].supertypes) {
            const MetamodelClass* const supertype = metamodel.findClass(name);
            if (supertype != nullptr && seen.insert(name).second) {
                supertypes_[number].push_back(numberOf(supertype));
            }
        }
    }

    void add(std::size_t number, std::size_t start) {
        if (seenFrom_[number] != start + 1) {
            seenFrom_[number] = start + 1;
            result_.push_back(&classes_[number]);
        }
    }

    const std::vector<MetamodelClass>& classes_;
    std::vector<std::vector<std::size_t>> supertypes_;  // of each class, each once
    std::vector<std::size_t> seenFrom_;                 // one more than the start that saw it last
    std::vector<const MetamodelClass*> result_;
};

}  // namespace

std::shared_ptr<const Metamodel> Metamodel::readFile(const std::string& path) {
    return make(*readModel(path));
}

std::shared_ptr<const Metamodel> Metamodel::readText(std::string_view text,
                                                     const std::string& name) {
    return make(*readModelText(text, name));
}

std::shared_ptr<const Metamodel> Metamodel::make(const RepositoryModel& document) {
    std::shared_ptr<Metamodel> result(new Metamodel(EcoreDocument(document).classes()));
    if (result->classes_.empty()) {
        throwLogged(ModelError(document.sourceName(), TextPlace(), "It declares no class."));
    }
    if (!result->gatherAll()) {
        throwLogged(ModelError(document.sourceName(), TextPlace(),
                               "Its classes have more than " + std::to_string(mostFeatures) +
                                   " features, inherited ones counted."));
    }
    return result;
}

Metamodel::Metamodel(std::vector<MetamodelClass> classes) : classes_(std::move(classes)) {
    for (std::size_t number = 0; number < classes_.size(); ++number) {
        numbers_.emplace(classes_[number].name, number);
    }
}

// Gathers the features of all classes; false when they are too many.
bool Metamodel::gatherAll() {
    Inheritance inheritance(*this);
    std::size_t total = 0;
    for (std::size_t number = 0; number < classes_.size(); ++number) {
        const std::vector<const MetamodelClass*>& all = inheritance.withSupertypes(number);
        allFeatures_.push_back(gather(all));
        total += all.size() + allFeatures_.back().size();
        if (total > mostFeatures) {
            return false;
        }
    }
    return true;
}

Metamodel::Features Metamodel::gather(const std::vector<const MetamodelClass*>& classes) {
    Features result;
    for (const MetamodelClass* const declaring : classes) {
        for (const MetamodelFeature& feature : declaring->features) {
            result.push_back(&feature);
        }
    }
    const auto isBefore = [](const MetamodelFeature* a, const MetamodelFeature* b) {
        return a->name < b->name;
    };
    const auto isSame = [](const MetamodelFeature* a, const MetamodelFeature* b) {
        return a->name == b->name;
    };
    std::stable_sort(result.begin(), result.end(), isBefore);
    result.erase(std::unique(result.begin(), result.end(), isSame), result.end());
    return result;
}

const MetamodelClass* Metamodel::findClass(std::string_view name) const {
    const auto found = numbers_.find(name);
    return found == numbers_.end() ? nullptr : &classes_[found->second];
}

const MetamodelFeature* Metamodel::findFeature(std::string_view className,
                                               std::string_view feature) const {
    const Features& all = features(className);
    const auto found = std::lower_bound(
        all.begin(), all.end(), feature,
        [](const MetamodelFeature* a, std::string_view name) { return a->name < name; });
    return found != all.end() && (*found)->name == feature ? *found : nullptr;
}

const std::vector<const MetamodelFeature*>& Metamodel::features(std::string_view className) const {
    static const Features none;
    const auto found = numbers_.find(className);
    return found == numbers_.end() ? none : allFeatures_[found->second];
}
