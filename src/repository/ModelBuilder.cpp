// Readers add objects and what stands in them to a log for each feature of each class. finish()
// then works through the whole document:
// 1. lists the contained objects of each object, numbers their places, and indexes the ids;
// 2. settles the names, since paths by name need them;
// 3. for each feature of each class, tries to resolve every XML attribute: if all resolve, the
//    feature is a reference and the links are its targets, else the texts are its values;
// 4. appends the links of child elements, and turns links into ranges of targets;
// 5. notes what the metamodel declares for the classes of the document.
#include "repository/ModelBuilder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "repository/ContainmentTypes.h"
#include "repository/ReferenceResolver.h"
#include "repository/RepositoryModel.h"

namespace {

// So many ids ahead, their places in the table and then their texts are fetched into the cache. No
// function of its own does that: without a result, compilers take it for nothing.
constexpr std::size_t soon = 12;
constexpr std::size_t later = 24;

}  // namespace

ModelBuilder::ModelBuilder(SourceText source, std::shared_ptr<const Metamodel> metamodel,
                           References references)
    : tables_(std::move(source)), references_(references) {
    tables_.metamodel = std::move(metamodel);
    tables_.hasOneRoot = references == References::exactIds;
    tables_.featureNames.intern("parent");  // the keys that RepositoryModel knows
    tables_.featureNames.intern("children");
}

ModelBuilder::~ModelBuilder() = default;

void ModelBuilder::reserve(std::size_t objectCount) {
    tables_.records.reserve(objectCount);
    tables_.handles.reserve(objectCount);
}

std::uint32_t ModelBuilder::classNumber(std::string_view name) {
    const std::uint32_t number = tables_.classNames.intern(name);
    if (number == tables_.classes.size()) {
        tables_.classes.emplace_back();
        logs_.emplace_back();
    }
    return number;
}

std::uint32_t ModelBuilder::containedClass(std::uint32_t ownerClass, MMKey feature) {
    FeatureLog& log = this->log(ownerClass, feature);
    if (log.containedClass == NameTable::none) {
        const std::uint32_t number = classNumber(containedClassName(ownerClass, feature));
        this->log(ownerClass, feature).containedClass = number;  // a new class moves the logs
        return number;
    }
    return log.containedClass;
}

std::string_view ModelBuilder::containedClassName(std::uint32_t ownerClass, MMKey feature) {
    const std::string_view owner = className(ownerClass);
    const std::string_view name = tables_.featureNames.name(feature);
    if (tables_.metamodel != nullptr) {
        const MetamodelFeature* const declared = tables_.metamodel->findFeature(owner, name);
        if (declared != nullptr && declared->kind != MetamodelFeature::Kind::attribute &&
            !declared->type.empty()) {
            return declared->type;
        }
    }
    const std::string_view type = containmentType(owner, name);
    return type.empty() ? texts().view(texts().keep(capitalized(name))) : type;
}

MMObject ModelBuilder::addObject(std::uint32_t classNumber, std::size_t offset) {
    ClassRecord& owner = tables_.classes[classNumber];
    const MMObject object =
        ModelTables::handle(classNumber, static_cast<std::uint32_t>(owner.objects.size()));
    owner.objects.push_back(static_cast<ObjectNumber>(tables_.records.size()));
    tables_.records.emplace_back().offset = static_cast<std::uint32_t>(offset);
    tables_.handles.push_back(object);
    return object;
}

MMObject ModelBuilder::addContained(MMObject owner, MMKey feature, std::uint32_t classNumber,
                                    std::size_t offset) {
    const MMObject object = addObject(classNumber, offset);
    log(ModelTables::classNumber(owner), feature)
        .links.push_back({object, ModelTables::index(owner), 0});
    ObjectRecord& record = tables_.records.back();
    record.container = tables_.number(owner);
    record.feature = feature;
    ++tables_.records[record.container].childCount;
    return object;
}

void ModelBuilder::addRoot(MMObject object) {
    tables_.records[tables_.number(object)].position =
        static_cast<std::uint32_t>(tables_.roots.size());
    tables_.roots.push_back(object);
}

void ModelBuilder::addAttribute(MMObject object, MMKey feature, TextRef value) {
    FeatureLog& log = this->log(ModelTables::classNumber(object), feature);
    const std::uint32_t owner = ModelTables::index(object);
    if (!log.attributes.add(owner, value, tables_.texts)) {
        log.values.push_back({owner, value});  // the same name under another prefix
    }
}

void ModelBuilder::addValue(MMObject object, MMKey feature, TextRef value) {
    log(ModelTables::classNumber(object), feature)
        .values.push_back({ModelTables::index(object), value});
}

void ModelBuilder::addReference(MMObject object, MMKey feature, TextRef text) {
    FeatureLog& log = this->log(ModelTables::classNumber(object), feature);
    log.hasReferences = true;
    log.links.push_back({mmNoObject, ModelTables::index(object),
                         static_cast<std::uint32_t>(referenceTexts_.size())});
    referenceTexts_.push_back(text);
}

void ModelBuilder::addAssociation(MMObject object, MMKey feature) {
    const std::uint32_t classNumber = ModelTables::classNumber(object);
    log(classNumber, feature);
    ClassRecord& owner = tables_.classes[classNumber];
    owner.features[owner.featureNumbers.find(feature)].isAssociation = true;
}

ModelBuilder::FeatureLog& ModelBuilder::log(std::uint32_t classNumber, MMKey feature) {
    std::uint32_t number = tables_.classes[classNumber].featureNumbers.find(feature);
    if (number == FeatureMap::none) {
        number = addFeature(classNumber, feature);
    }
    return logs_[classNumber][number];
}

std::uint32_t ModelBuilder::addFeature(std::uint32_t classNumber, MMKey feature) {
    ClassRecord& owner = tables_.classes[classNumber];
    const auto number = static_cast<std::uint32_t>(owner.features.size());
    owner.features.emplace_back().name = feature;
    owner.featureNumbers.insert(feature, number);
    logs_[classNumber].emplace_back();
    return number;
}

std::unique_ptr<RepositoryModel> ModelBuilder::finish() {
    numberPositions();
    listChildren();
    indexIds();
    settleNames();
    ReferenceResolver resolver(tables_);
    findRoot(resolver);
    for (std::uint32_t number = 0; number < tables_.classes.size(); ++number) {
        for (std::uint32_t i = 0; i < tables_.classes[number].features.size(); ++i) {
            settle(number, i, resolver);
        }
        logs_[number] = {};
        declareFeatures(number);
        listInstances(number);
    }
    return std::make_unique<RepositoryModel>(std::move(tables_));
}

// The place of each contained object among the child elements of the same feature.
void ModelBuilder::numberPositions() {
    for (std::uint32_t number = 0; number < tables_.classes.size(); ++number) {
        std::vector<std::uint32_t> counts(tables_.classes[number].objects.size());
        for (const FeatureLog& log : logs_[number]) {
            for (const Link& link : log.links) {
                const std::uint32_t position = counts[link.owner]++;
                if (link.target != mmNoObject) {
                    tables_.records[tables_.number(link.target)].position = position;
                }
            }
            for (const Link& link : log.links) {
                counts[link.owner] = 0;
            }
        }
    }
}

void ModelBuilder::listChildren() {
    std::uint32_t count = 0;
    for (ObjectRecord& record : tables_.records) {
        record.firstChild = count;
        count += std::exchange(record.childCount, 0);
    }
    tables_.children.resize(count);
    for (std::size_t number = 0; number < tables_.records.size(); ++number) {
        const ObjectNumber container = tables_.records[number].container;
        if (container != NameTable::none) {
            ObjectRecord& record = tables_.records[container];
            tables_.children[record.firstChild + record.childCount++] = tables_.handles[number];
        }
    }
}

void ModelBuilder::indexIds() {
    tables_.ids.reserve(tables_.records.size());
    for (ObjectNumber number = 0; number < tables_.records.size(); ++number) {
        if (tables_.ids.isLarge() && number + later < tables_.records.size()) {
            const TextRef next = tables_.records[number + soon].id;
            __builtin_prefetch(tables_.ids.firstLook(texts().view(next)));
            __builtin_prefetch(texts().view(tables_.records[number + later].id).data());
        }
        const TextRef id = tables_.records[number].id;
        if (!id.isAbsent() && tables_.ids.insert(id, number, tables_.texts) != IdTable::none &&
            references_ == References::exactIds) {
            tables_.source.fail(
                id.offset, "The id \"" + std::string(tables_.texts.view(id)) + "\" is repeated.");
        }
    }
}

// The root that the document names, else its first object.
void ModelBuilder::findRoot(const ReferenceResolver& resolver) {
    if (!rootId_.isAbsent()) {
        std::vector<Link> root;
        resolver.resolveId(0, rootId_, root);
        addRoot(root[0].target);
    } else if (tables_.hasOneRoot && !tables_.handles.empty()) {
        addRoot(tables_.handles[0]);
    }
}

void ModelBuilder::settleNames() {
    const MMKey name = tables_.featureNames.find("name");
    for (std::uint32_t number = 0; number < tables_.classes.size(); ++number) {
        ClassRecord& owner = tables_.classes[number];
        owner.nameFeature = owner.featureNumbers.find(name);
        if (owner.nameFeature != FeatureMap::none) {
            settleValues(owner.features[owner.nameFeature], logs_[number][owner.nameFeature],
                         owner.objects.size());
        }
    }
}

void ModelBuilder::settle(std::uint32_t classNumber, std::uint32_t number,
                          ReferenceResolver& resolver) {
    ClassRecord& owner = tables_.classes[classNumber];
    FeatureRecord& record = owner.features[number];
    FeatureLog& log = logs_[classNumber][number];
    links_.clear();
    if (isReference(classNumber, record.name, log, resolver)) {
        log.attributes = {};
        record.isAssociation = true;
        log.hasReferences = true;
    } else {
        links_.clear();
    }
    std::vector<Link>& links = allLinks(log, resolver);
    if (!links.empty()) {
        record.targets = TargetColumn(links, resolver.outsideTexts(), owner.objects.size());
        record.isAssociation = true;
        record.isContainment = !log.hasReferences;
    }
    settleValues(record, log, owner.objects.size());
}

// Whether the XML attributes of a feature are references, and if so, their links.
bool ModelBuilder::isReference(std::uint32_t classNumber, MMKey feature, const FeatureLog& log,
                               ReferenceResolver& resolver) {
    const std::string_view name = tables_.featureNames.name(feature);
    if (log.attributes.count() == 0 || references_ == References::exactIds || name == "id" ||
        name == "name") {
        return false;
    }
    const MetamodelFeature* const declared =
        tables_.metamodel == nullptr ? nullptr
                                     : tables_.metamodel->findFeature(className(classNumber), name);
    if (declared != nullptr && declared->kind == MetamodelFeature::Kind::attribute) {
        return false;
    }
    return resolveAll(log.attributes, declared != nullptr, resolver) &&
           (declared != nullptr || !links_.empty());
}

// Adds links for all XML attributes of a feature. Where it is not certain that they are references,
// stops and returns false at the first that is none.
bool ModelBuilder::resolveAll(const ValueColumn& column, bool isCertain,
                              ReferenceResolver& resolver) {
    links_.reserve(column.placeCount());
    for (std::size_t place = 0; place < column.placeCount(); ++place) {
        if (tables_.ids.isLarge() && place + later < column.placeCount()) {
            __builtin_prefetch(tables_.ids.firstLook(texts().view(column.textAt(place + soon))));
            __builtin_prefetch(texts().view(column.textAt(place + later)).data());
        }
        const TextRef text = column.textAt(place);
        if (!text.isAbsent() && !resolver.resolve(column.ownerAt(place), text, isCertain, links_)) {
            return false;
        }
    }
    return true;
}

// The links of child elements, behind those of the attributes of the same object if there are any.
std::vector<Link>& ModelBuilder::allLinks(FeatureLog& log, ReferenceResolver& resolver) {
    if (links_.empty() && !log.hasReferences) {
        return log.links;
    }
    for (const Link& link : log.links) {
        if (link.target != mmNoObject) {
            links_.push_back(link);
        } else if (references_ == References::exactIds) {
            resolver.resolveId(link.owner, referenceTexts_[link.text], links_);
        } else {
            resolver.resolve(link.owner, referenceTexts_[link.text], true, links_);
        }
    }
    return links_;
}

// Gives a feature its values: those of attributes, before those of child elements.
void ModelBuilder::settleValues(FeatureRecord& record, FeatureLog& log, std::size_t objectCount) {
    if (log.attributes.count() == 0 && log.values.empty()) {
        return;
    }
    record.isAttribute = true;
    record.values = log.values.empty() ? std::move(log.attributes)
                                       : merge(log.attributes, std::move(log.values));
    record.values.settle(objectCount, texts());
    log.attributes = {};
    log.values = {};
}

// One column of values from two lists; several values of one object become one text.
ValueColumn ModelBuilder::merge(const ValueColumn& first, std::vector<OwnedText> second) {
    std::vector<OwnedText> all;
    for (std::size_t place = 0; place < first.placeCount(); ++place) {
        if (!first.textAt(place).isAbsent()) {
            all.push_back({first.ownerAt(place), first.textAt(place)});
        }
    }
    all.insert(all.end(), second.begin(), second.end());
    std::stable_sort(all.begin(), all.end(),
                     [](const OwnedText& a, const OwnedText& b) { return a.owner < b.owner; });
    ValueColumn result;
    for (std::size_t i = 0; i < all.size();) {
        std::size_t end = i + 1;
        std::string joined;
        for (; end < all.size() && all[end].owner == all[i].owner; ++end) {
            joined += end == i + 1 ? std::string(texts().view(all[i].text)) : std::string();
            joined.append(", ").append(texts().view(all[end].text));
        }
        const TextRef text = end == i + 1 ? all[i].text : texts().keep(std::move(joined));
        result.add(all[i].owner, text, texts());
        i = end;
    }
    return result;
}

void ModelBuilder::listInstances(std::uint32_t classNumber) {
    ClassRecord& owner = tables_.classes[classNumber];
    owner.instances.reserve(owner.objects.size());
    for (std::uint32_t index = 0; index < owner.objects.size(); ++index) {
        owner.instances.push_back(ModelTables::handle(classNumber, index));
    }
}

void ModelBuilder::declareFeatures(std::uint32_t classNumber) {
    if (tables_.metamodel == nullptr) {
        return;
    }
    for (const MetamodelFeature* const declared :
         tables_.metamodel->features(className(classNumber))) {
        const MMKey key = feature(declared->name);
        std::uint32_t number = tables_.classes[classNumber].featureNumbers.find(key);
        if (number == FeatureMap::none) {
            number = addFeature(classNumber, key);
        }
        tables_.classes[classNumber].features[number].declared = declared;
    }
}
