// A declaration has effect for its class and all that inherit from it. So a question about a set of
// classes is answered with the set of all that these inherit from: a declaration counts if its
// class is in there. What an association reaches is the union of what it is declared to reach,
// heirs included, and of what objects of the documents show, which is looked up once.
#include "names/NameVocabulary.h"

#include <algorithm>

#include "names/NearestNames.h"

namespace mmq {

namespace {

constexpr std::string_view ownedPrefix = "owned";
constexpr std::string_view parentName = "parent";
constexpr std::string_view childrenName = "children";

bool startsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

// The name itself, and the one that it means where an object has none of this name.
std::vector<std::string> meanings(std::string_view name) {
    return {std::string(name), std::string(ownedPrefix) + capitalized(name)};
}

// "x" for "ownedX"; empty for other names.
std::string shortForm(std::string_view name) {
    const bool isOwned = startsWith(name, ownedPrefix) && name.size() > ownedPrefix.size() &&
                         name[ownedPrefix.size()] >= 'A' && name[ownedPrefix.size()] <= 'Z';
    if (!isOwned) {
        return {};
    }
    std::string result(name.substr(ownedPrefix.size()));
    result[0] = static_cast<char>(result[0] - 'A' + 'a');
    return result;
}

bool fits(const NameDeclaration& declaration, ReadAs readAs) {
    return declaration.isAssociation || readAs == ReadAs::attribute;
}

}  // namespace

// ---------------------------------------------------------------- what there is

void NameVocabulary::addMetamodel(const Metamodel& metamodel, const std::string& name) {
    if (std::find(metamodels_.begin(), metamodels_.end(), &metamodel) == metamodels_.end()) {
        metamodelName_ = metamodels_.empty() ? name : "the metamodels";
        metamodels_.push_back(&metamodel);
        declared_.addMetamodel(metamodel);
    }
}

void NameVocabulary::addModel(const RepositoryModel& model) {
    if (model.metamodel() != nullptr) {
        addMetamodel(*model.metamodel(), "the metamodel");
    }
    declared_.addModel(model);
    knowsAllClasses_ = knowsAllClasses_ && (model.metamodel() != nullptr || isOfStandard(model));
    ShownModel shown{&model, {}};
    for (const ClassSummary& summary : model.classes()) {
        const ClassNumber number = declared_.byName().at(std::string(summary.name));
        shown.numbers.emplace(summary.name.data(), number);
        shown_.insert(number);
    }
    for (const MMObject root : model.roots()) {
        roots_.insert(shown.numbers.at(model.className(root).data()));
    }
    models_.push_back(std::move(shown));
}

bool NameVocabulary::isOfStandard(const RepositoryModel& model) const {
    const MMObjectRange roots = model.roots();
    return std::any_of(roots.begin(), roots.end(), [this, &model](MMObject root) {
        const std::string name(model.className(root));
        return declared_.findStandard(name) != DeclaredNames::anything;
    });
}

std::string NameVocabulary::subject() const {
    return models_.size() > 1    ? "the models"
           : models_.size() == 1 ? models_.front().model->sourceName()
                                 : metamodelName_;
}

std::optional<ClassNumber> NameVocabulary::findClass(const std::string& name) const {
    const auto found = declared_.byName().find(name);
    if (found != declared_.byName().end()) {
        return found->second;
    }
    const ClassNumber standard = declared_.findStandard(name);
    const bool isKnown = hasModel() && standard != DeclaredNames::anything;
    return isKnown ? std::optional<ClassNumber>(standard) : std::nullopt;
}

bool NameVocabulary::hasClassInAnyCase(const std::string& name) const {
    const std::string sought = lowerCase(name);
    const auto isMeant = [&sought](const auto& entry) { return lowerCase(entry.first) == sought; };
    const auto& own = declared_.byName();
    return std::any_of(own.begin(), own.end(), isMeant) ||
           (hasModel() && declared_.hasStandardInAnyCase(name));
}

ClassSet NameVocabulary::findClasses(const std::vector<std::string>& names) const {
    ClassSet result;
    for (const std::string& name : names) {
        const std::optional<ClassNumber> number = findClass(name);
        if (number) {
            result.insert(*number);
        }
    }
    return result;
}

// ---------------------------------------------------------------- which names classes have

bool NameVocabulary::has(const ClassSet& classes, std::string_view name, ReadAs readAs) const {
    const std::vector<NameDeclaration>& own = declared_.find(name);
    const bool isDirect = std::any_of(own.begin(), own.end(), [&](const NameDeclaration& d) {
        return fits(d, readAs) && classes.contains(d.owner);
    });
    if (isDirect) {
        return true;
    }
    const Heirs heirs = this->heirs(classes);
    if (heirs.areUnknown() || isBuiltIn(heirs, name)) {
        return true;
    }
    for (const std::string& meaning : meanings(name)) {
        for (const NameDeclaration& declaration : declared_.find(meaning)) {
            if (fits(declaration, readAs) && heirs.have(declaration)) {
                return true;
            }
        }
    }
    return false;
}

bool NameVocabulary::mayHave(const ClassSet& classes, std::string_view name, ReadAs readAs) const {
    return classes.meets(declared_.onlyShown()) && has(allClasses(), name, readAs);
}

bool NameVocabulary::isBuiltIn(const Heirs& heirs, std::string_view name) const {
    return name == parentName || name == childrenName ||
           (startsWith(name, inversePrefix) &&
            !inverseOwners(heirs, name.substr(inversePrefix.size())).isEmpty());
}

LeftOut NameVocabulary::findLeftOut(const ClassSet& classes, std::string_view name) const {
    const Heirs heirs = this->heirs(classes);
    LeftOut result = LeftOut::no;
    for (const std::string& meaning : meanings(name)) {
        for (const NameDeclaration& declaration : declared_.find(meaning)) {
            const bool isHad = heirs.have(declaration);
            if (isHad && declaration.leftOut == LeftOut::no) {
                return LeftOut::no;
            }
            result = isHad ? declaration.leftOut : result;
        }
    }
    return heirs.areUnknown() ? LeftOut::no : result;
}

// ---------------------------------------------------------------- what associations reach

ClassSet NameVocabulary::reach(const ClassSet& classes, std::string_view association) const {
    ClassSet result = declaredReach(heirs(classes), association);
    result.insert(shownReach(classes, association));
    return result.isEmpty() ? allClasses() : result;
}

ClassSet NameVocabulary::declaredReach(const Heirs& heirs, std::string_view association) const {
    ClassSet types;
    for (const std::string& meaning : meanings(association)) {
        for (const NameDeclaration& declaration : declared_.find(meaning)) {
            if (declaration.isAssociation && !declaration.isShown && heirs.have(declaration)) {
                types.insert(declaration.type);
            }
        }
    }
    if (association == parentName || association == childrenName) {
        types.insert(declaredContainment(heirs, association == parentName));
    } else if (startsWith(association, inversePrefix)) {
        types.insert(inverseOwners(heirs, association.substr(inversePrefix.size())));
    }
    return withHeirs(types);
}

// The classes that contain some, or that some contain, as far as that is declared. What documents
// leave out contains nothing there.
ClassSet NameVocabulary::declaredContainment(const Heirs& heirs, bool ofContainers) const {
    ClassSet result;
    for (const auto& [name, declarations] : declared_.all()) {
        for (const NameDeclaration& declaration : declarations) {
            const bool isMeant = declaration.isContainment && declaration.leftOut == LeftOut::no &&
                                 (ofContainers ? allClasses().contains(declaration.owner) &&
                                                     mayReach(declaration, heirs, name)
                                               : heirs.have(declaration));
            if (isMeant) {
                result.insert(ofContainers ? declaration.owner : declaration.type);
            }
        }
    }
    return result;
}

ClassSet NameVocabulary::withHeirs(const ClassSet& types) const {
    ClassSet result = declared_.graph().withHeirs(types);
    if (types.contains(DeclaredNames::everything)) {
        result.insert(allClasses());
    }
    return result;
}

ClassSet NameVocabulary::inverseOwners(const Heirs& heirs, std::string_view feature) const {
    ClassSet owners;
    for (const NameDeclaration& declaration : declared_.find(feature)) {
        if (declaration.isAssociation && mayReach(declaration, heirs, feature)) {
            owners.insert(declaration.owner);
        }
    }
    return owners;
}

// Whether an association may reach one of the classes: by its type, or as documents show.
bool NameVocabulary::mayReach(const NameDeclaration& declaration, const Heirs& heirs,
                              std::string_view feature) const {
    if (declaration.isShown) {
        const ClassSet& reached = shownReach(declaration.owner, feature);
        return reached.isEmpty() || reached.meets(heirs.classes);
    }
    return declaration.type == DeclaredNames::anything ||
           declaration.type == DeclaredNames::everything || heirs.areUnknown() ||
           heirs.all.contains(declaration.type);
}

ClassSet NameVocabulary::shownReach(const ClassSet& classes, std::string_view association) const {
    ClassSet result;
    shown_.forEach([&](ClassNumber number) {
        if (classes.contains(number)) {
            result.insert(shownReach(number, association));
        }
    });
    return result;
}

const ClassSet& NameVocabulary::shownReach(ClassNumber number, std::string_view association) const {
    const auto [place, isNew] = reaches_.try_emplace({number, std::string(association)});
    if (!isNew) {
        return place->second;
    }
    std::vector<MMObject> buffer;
    for (const ShownModel& shown : models_) {
        const MMKey key = shown.model->associationKey(association);
        if (key == mmUnknownKey) {
            continue;
        }
        for (const MMObject object : shown.model->instances(className(number))) {
            for (const MMObject target : shown.model->targets(object, key, buffer)) {
                place->second.insert(shown.numbers.at(shown.model->className(target).data()));
            }
        }
    }
    return place->second;
}

// ---------------------------------------------------------------- what may have been meant

std::vector<std::string> NameVocabulary::names(const ClassSet& classes, ReadAs readAs) const {
    const Heirs heirs = this->heirs(classes);
    std::vector<std::string> result{std::string(parentName), std::string(childrenName)};
    for (const auto& [name, declarations] : declared_.all()) {
        const bool isHad =
            std::any_of(declarations.begin(), declarations.end(),
                        [&](const NameDeclaration& d) { return fits(d, readAs) && heirs.have(d); });
        if (isHad) {
            result.push_back(name);
            const std::string brief = shortForm(name);
            if (!brief.empty()) {
                result.push_back(brief);
            }
        }
    }
    return result;
}

std::vector<std::string> NameVocabulary::shownNames(const ClassSet& classes, ReadAs kind) const {
    std::vector<std::string> result;
    for (const auto& [name, declarations] : declared_.all()) {
        const bool isShown = std::any_of(
            declarations.begin(), declarations.end(), [&](const NameDeclaration& declaration) {
                return declaration.isShown && classes.contains(declaration.owner) &&
                       declaration.isAssociation == (kind == ReadAs::association);
            });
        if (isShown) {
            result.push_back(name);
        }
    }
    return result;
}

std::vector<std::string> NameVocabulary::inverses(const ClassSet& classes) const {
    const Heirs heirs = this->heirs(classes);
    std::vector<std::string> result;
    for (const auto& [name, declarations] : declared_.all()) {
        if (!inverseOwners(heirs, name).isEmpty()) {
            result.push_back(name);
        }
    }
    return result;
}

std::vector<std::string> NameVocabulary::classNames() const {
    std::vector<std::string> result;
    for (const auto& [name, number] : declared_.byName()) {
        result.push_back(name);
    }
    return result;
}

ClassSet NameVocabulary::ownersOf(std::string_view name, ReadAs readAs) const {
    ClassSet owners;
    const bool isInverse = startsWith(name, inversePrefix);
    const std::string_view forth = name.substr(isInverse ? inversePrefix.size() : 0);
    for (const NameDeclaration& declaration : declared_.find(forth)) {
        if (!fits(declaration, isInverse ? ReadAs::association : readAs)) {
            continue;
        }
        if (isInverse && declaration.isShown) {
            owners.insert(shownReach(declaration.owner, forth));
        } else {
            const ClassNumber number = isInverse ? declaration.type : declaration.owner;
            if (allClasses().contains(number)) {
                owners.insert(number);
            }
        }
    }
    return owners;
}

std::vector<std::string> NameVocabulary::classesWith(std::string_view name, ReadAs readAs) const {
    const ClassSet owners = ownersOf(name, readAs);
    std::vector<std::string> result;
    owners.forEach([&](ClassNumber owner) {
        ClassSet alone;
        alone.insert(owner);
        ClassSet others = declared_.graph().withSupertypes(alone);
        others.erase(owner);
        if (!others.meets(owners)) {
            result.push_back(className(owner));
        }
    });
    std::sort(result.begin(), result.end());
    return result;
}

}  // namespace mmq
