// A handle tells the class of its object, and a key finds the feature within the class by a small
// table; the value or the range of targets then stands in a column under the object's index. Only
// where that has nothing for the object are the other meanings of a name tried, in this order: the
// built-in associations where the class has no such feature, the default of the metamodel where it
// declares one, and the feature with "owned" before the name.
#include "repository/RepositoryModel.h"

#include <algorithm>
#include <utility>

#include "fliodram/MMEvaluationContext.h"

namespace {

constexpr std::string_view inversePrefix = "inverse:";
constexpr std::string_view separator = ", ";

std::string ownedName(std::string_view name) { return "owned" + capitalized(name); }

}  // namespace

/// A list of texts that is composed in a buffer, within the limits of an evaluation where one asks.
class RepositoryModel::TextList {
public:
    TextList(std::string& buffer, MMEvaluationContext* context)
        : buffer_(buffer), context_(context) {}

    void append(std::string_view item) {
        const std::string_view between = std::exchange(hasItems_, true) ? separator : "";
        if (context_ != nullptr) {
            context_->countText(buffer_.size(), between.size() + item.size());
        }
        buffer_.append(between).append(item);
    }

    std::string_view view() const { return buffer_; }

    /// The only text of a list, which `read` gives or writes into the buffer.
    template <class Read>
    std::string_view only(const Read& read) {
        const std::string_view text = read(buffer_);
        if (context_ != nullptr) {
            context_->countCopy(buffer_.size());
        }
        return text;
    }

private:
    std::string& buffer_;
    MMEvaluationContext* context_;
    bool hasItems_ = false;
};

RepositoryModel::RepositoryModel(ModelTables tables)
    : tables_(std::move(tables)), fallbacks_(tables_.featureNames.size()), inverses_(tables_) {
    noteKinds();
    for (MMKey number = 0; number < fallbacks_.size(); ++number) {
        const std::string_view name = tables_.featureNames.name(number);
        fallbacks_[number].owned = tables_.featureNames.find(ownedName(name));
        fallbacks_[number].inverse = inverseOf(name);
    }
    packNames();
    prepareColumns();
    offerColumns();
}

RepositoryModel::~RepositoryModel() = default;

// Notes for each name what it is in some class.
void RepositoryModel::noteKinds() {
    for (const ClassRecord& owner : tables_.classes) {
        for (const FeatureRecord& feature : owner.features) {
            const bool isDeclaredAssociation =
                feature.declared != nullptr &&
                feature.declared->kind != MetamodelFeature::Kind::attribute;
            Fallback& fallback = fallbacks_[feature.name];
            fallback.isAttribute = true;  // an association reads as a text, too
            fallback.isAssociation =
                fallback.isAssociation || feature.isAssociation || isDeclaredAssociation;
            fallback.hasReferences =
                fallback.hasReferences || (feature.isAssociation && !feature.isContainment);
        }
    }
}

// The feature of a class that stands in for one that an object does not have, or null.
const FeatureRecord* RepositoryModel::ownedFeature(const ClassRecord& owner, MMKey key) const {
    const MMKey owned = (key & inverseBit) != 0 ? mmUnknownKey : fallbacks_[key].owned;
    return owned == mmUnknownKey ? nullptr : owner.find(owned);
}

MMKey RepositoryModel::inverseOf(std::string_view name) const {
    if (name.substr(0, inversePrefix.size()) != inversePrefix) {
        return mmUnknownKey;
    }
    const MMKey feature = tables_.featureNames.find(name.substr(inversePrefix.size()));
    return feature != NameTable::none && fallbacks_[feature].isAssociation ? feature : mmUnknownKey;
}

bool RepositoryModel::isMeant(MMKey key, bool Fallback::*isKnown) const {
    const Fallback& fallback = fallbacks_[key];
    return key == parentKey || key == childrenKey || fallback.*isKnown ||
           fallback.inverse != mmUnknownKey ||
           (fallback.owned != mmUnknownKey && fallbacks_[fallback.owned].*isKnown);
}

MMKey RepositoryModel::key(std::string_view name, bool Fallback::*isKnown) const {
    const MMKey inverse = inverseOf(name);
    if (inverse != mmUnknownKey) {
        inverses_.prepare(inverse);
    }
    const MMKey own = tables_.featureNames.find(name);
    if (own != NameTable::none && isMeant(own, isKnown)) {
        return own;
    }
    if (inverse != mmUnknownKey) {
        return inverse | inverseBit;
    }
    const MMKey owned = tables_.featureNames.find(ownedName(name));
    return owned != NameTable::none && fallbacks_[owned].*isKnown ? owned : mmUnknownKey;
}

MMKey RepositoryModel::classKey(std::string_view name) const {
    return tables_.classNames.find(name);
}

MMKey RepositoryModel::attributeKey(std::string_view name) const {
    return key(name, &Fallback::isAttribute);
}

MMKey RepositoryModel::associationKey(std::string_view name) const {
    return key(name, &Fallback::isAssociation);
}

std::string_view RepositoryModel::className(MMObject object) const {
    return tables_.classNames.name(ModelTables::classNumber(object));
}

std::string_view RepositoryModel::uid(MMObject object, std::string& buffer) const {
    const TextRef id = tables_.record(object).id;
    if (!id.isAbsent()) {
        return tables_.texts.view(id);
    }
    buffer = path(object);
    return buffer;
}

std::string_view RepositoryModel::attribute(MMObject object, MMKey attribute,
                                            std::string& buffer) const {
    TextList list(buffer, nullptr);
    return read(object, attribute, list);
}

std::string_view RepositoryModel::attributeWithin(MMEvaluationContext& context, MMObject object,
                                                  MMKey attribute, std::string& buffer) const {
    TextList list(buffer, &context);
    return read(object, attribute, list);
}

std::string_view RepositoryModel::read(MMObject object, MMKey attribute, TextList& list) const {
    const FeatureRecord* const feature = tables_.classOf(object).find(attribute);
    if (feature != nullptr && !feature->isAssociation) {
        const TextRef value = feature->values.at(ModelTables::index(object));
        if (!value.isAbsent()) {
            return tables_.texts.view(value);
        }
    }
    return otherText(object, attribute, feature, list);
}

MMObjectRange RepositoryModel::targets(MMObject object, MMKey association,
                                       std::vector<MMObject>& /*buffer*/) const {
    const FeatureRecord* const feature = tables_.classOf(object).find(association);
    if (feature != nullptr) {
        const MMObjectRange range = feature->targets.at(ModelTables::index(object));
        if (range.first != range.last) {
            return range;
        }
    }
    return otherTargets(object, association, feature);
}

MMObjectRange RepositoryModel::instances(MMObject /*object*/, MMKey classOfInstances,
                                         std::vector<MMObject>& /*buffer*/) const {
    const std::vector<MMObject>& all = tables_.classes[classOfInstances].instances;
    return {all.data(), all.data() + all.size(), true};
}

MMObject RepositoryModel::outermost(MMObject object) const {
    if (tables_.hasOneRoot) {
        return tables_.roots[0];
    }
    ObjectNumber number = tables_.number(object);
    while (tables_.records[number].container != NameTable::none) {
        number = tables_.records[number].container;
    }
    return tables_.handles[number];
}

// What a built-in association reaches; nothing where the key names none.
MMObjectRange RepositoryModel::builtIn(MMObject object, MMKey key) const {
    if (key == parentKey) {
        const ObjectNumber container = tables_.record(object).container;
        if (container == NameTable::none) {
            return {};
        }
        const MMObject* const handle = tables_.handles.data() + container;
        return {handle, handle + 1, true};
    }
    if (key == childrenKey) {
        return tables_.childrenOf(tables_.number(object));
    }
    const MMKey feature = (key & inverseBit) != 0 ? key & ~inverseBit : fallbacks_[key].inverse;
    return feature == mmUnknownKey ? MMObjectRange() : inverses_.at(feature, object);
}

MMObjectRange RepositoryModel::otherTargets(MMObject object, MMKey key,
                                            const FeatureRecord* feature) const {
    if (feature != nullptr && (feature->declared != nullptr || has(*feature, object))) {
        return {};
    }
    if (feature == nullptr) {
        const MMObjectRange range = builtIn(object, key);
        if (range.first != range.last) {
            return range;
        }
    }
    feature = ownedFeature(tables_.classOf(object), key);
    return feature == nullptr ? MMObjectRange() : feature->targets.at(ModelTables::index(object));
}

std::string_view RepositoryModel::otherText(MMObject object, MMKey key,
                                            const FeatureRecord* feature, TextList& list) const {
    if (feature != nullptr) {
        if (has(*feature, object)) {
            return textOf(*feature, object, list);
        }
        if (feature->declared != nullptr) {
            return feature->declared->defaultText;
        }
    } else {
        const MMObjectRange range = builtIn(object, key);
        if (range.first != range.last) {
            return joinNames(range, list);
        }
    }
    feature = ownedFeature(tables_.classOf(object), key);
    return feature == nullptr ? std::string_view() : textOf(*feature, object, list);
}

bool RepositoryModel::has(const FeatureRecord& feature, MMObject object) {
    const std::uint32_t index = ModelTables::index(object);
    return !feature.values.at(index).isAbsent() || feature.targets.at(index).size() != 0 ||
           !feature.targets.outsideAt(index).empty();
}

// The value, or the names of the targets; only a list of several is composed in the buffer.
std::string_view RepositoryModel::textOf(const FeatureRecord& feature, MMObject object,
                                         TextList& list) const {
    const std::uint32_t index = ModelTables::index(object);
    const TextRef value = feature.values.at(index);
    const MMObjectRange range = feature.targets.at(index);
    const TargetColumn::OutsideRange outside = feature.targets.outsideAt(index);
    if (range.size() == 0 && outside.empty()) {
        return value.isAbsent() ? std::string_view() : tables_.texts.view(value);
    }
    if (value.isAbsent() && outside.empty()) {
        return joinNames(range, list);
    }
    appendTexts(feature, object, list);
    return list.view();
}

// A value and names in the order in which they stand in the document.
void RepositoryModel::appendTexts(const FeatureRecord& feature, MMObject object,
                                  TextList& list) const {
    const std::uint32_t index = ModelTables::index(object);
    const TextRef value = feature.values.at(index);
    const MMObjectRange range = feature.targets.at(index);
    if (!value.isAbsent()) {
        list.append(tables_.texts.view(value));
    }
    std::string uidBuffer;
    const MMObject* target = range.first;
    for (const TargetColumn::Outside& outside : feature.targets.outsideAt(index)) {
        for (; target != range.first + outside.before; ++target) {
            list.append(label(*target, uidBuffer));
        }
        list.append(tables_.texts.view(outside.text));
    }
    for (; target != range.last; ++target) {
        list.append(label(*target, uidBuffer));
    }
}

std::string_view RepositoryModel::joinNames(const MMObjectRange& range, TextList& list) const {
    if (range.size() == 1) {
        return list.only([&](std::string& buffer) { return label(*range.first, buffer); });
    }
    std::string uidBuffer;
    for (const MMObject object : range) {
        list.append(label(object, uidBuffer));
    }
    return list.view();
}

// The name of an object, or its uid where it has none.
std::string_view RepositoryModel::label(MMObject object, std::string& buffer) const {
    const std::string_view name = tables_.nameOf(object);
    return name.empty() ? uid(object, buffer) : name;
}

MMObjectRange RepositoryModel::objects() const {
    return {tables_.handles.data(), tables_.handles.data() + tables_.handles.size(), true};
}

MMObjectRange RepositoryModel::roots() const {
    return {tables_.roots.data(), tables_.roots.data() + tables_.roots.size(), true};
}

MMObject RepositoryModel::root(std::size_t number) const {
    return number < tables_.roots.size() ? tables_.roots[number] : mmNoObject;
}

std::vector<ClassSummary> RepositoryModel::classes() const {
    std::vector<ClassSummary> result;
    for (std::uint32_t number = 0; number < tables_.classes.size(); ++number) {
        ClassSummary summary;
        summary.name = tables_.classNames.name(number);
        summary.count = tables_.classes[number].objects.size();
        for (const FeatureRecord& feature : tables_.classes[number].features) {
            const std::string_view name = tables_.featureNames.name(feature.name);
            if (feature.isAttribute) {
                summary.attributes.push_back(name);
            }
            if (feature.isAssociation) {
                summary.associations.push_back(name);
            }
        }
        std::sort(summary.attributes.begin(), summary.attributes.end());
        std::sort(summary.associations.begin(), summary.associations.end());
        result.push_back(std::move(summary));
    }
    std::sort(result.begin(), result.end(), [](const ClassSummary& a, const ClassSummary& b) {
        return a.count != b.count ? a.count > b.count : a.name < b.name;
    });
    return result;
}

MMObjectRange RepositoryModel::instances(std::string_view name) const {
    const MMKey key = classKey(name);
    std::vector<MMObject> buffer;
    return key == mmUnknownKey ? MMObjectRange() : instances(mmNoObject, key, buffer);
}

MMObject RepositoryModel::find(std::string_view uid) const {
    const ObjectNumber number = tables_.ids.find(uid, tables_.texts);
    if (number != IdTable::none) {
        return tables_.handles[number];
    }
    if (uid.empty() || uid[0] != '/') {
        return mmNoObject;
    }
    pathsOnce_.run([this] { paths_ = std::make_unique<PathIndex>(tables_); });
    return paths_->find(uid);
}

MMObject RepositoryModel::container(MMObject object) const {
    const ObjectNumber number = tables_.record(object).container;
    return number == NameTable::none ? mmNoObject : tables_.handles[number];
}

TextPlace RepositoryModel::place(MMObject object) const {
    return tables_.source.place(tables_.record(object).offset);
}

std::string RepositoryModel::path(MMObject object) const {
    std::vector<const ObjectRecord*> steps;
    const ObjectRecord* record = &tables_.record(object);
    for (; record->container != NameTable::none; record = &tables_.records[record->container]) {
        steps.push_back(record);
    }
    std::string result = record->position == 0 ? "/" : '/' + std::to_string(record->position);
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        result.append("/@").append(tables_.featureNames.name((*step)->feature));
        result.append(".").append(std::to_string((*step)->position));
    }
    return result;
}
