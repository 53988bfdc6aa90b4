// The columns of a RepositoryModel, as expressions read them. A column shows what is the same for
// all objects of its class or stands in a list under the object's index; where an object needs a
// look at another feature, the column leaves it to the model's other operations.
#include "repository/RepositoryModel.h"

#include <cstddef>
#include <vector>

namespace {

// For each class, by its number, whether a reference leads to one of its objects.
std::vector<bool> findReferencedClasses(const ModelTables& tables) {
    std::vector<bool> isReferenced(tables.classes.size());
    for (const ClassRecord& owner : tables.classes) {
        for (const FeatureRecord& feature : owner.features) {
            if (feature.isContainment) {
                continue;
            }
            for (const MMObject target : feature.targets.targets()) {
                isReferenced[ModelTables::classNumber(target)] = true;
            }
        }
    }
    return isReferenced;
}

}  // namespace

// A reference reads as the name of its target, which may stand anywhere: the names of the classes
// that references lead to are packed.
void RepositoryModel::packNames() {
    const std::vector<bool> isReferenced = findReferencedClasses(tables_);
    for (std::size_t number = 0; number < isReferenced.size(); ++number) {
        ClassRecord& target = tables_.classes[number];
        if (isReferenced[number] && target.nameFeature != FeatureMap::none) {
            target.features[target.nameFeature].values.pack(tables_.texts);
        }
    }
}

// What an absent value of an attribute reads as is the same for all objects of a class, unless
// another feature of the object stands in for it.
void RepositoryModel::prepareColumns() {
    for (ClassRecord& owner : tables_.classes) {
        for (FeatureRecord& feature : owner.features) {
            std::string_view absentText;
            if (feature.declared != nullptr) {
                absentText = feature.declared->defaultText;
            } else if (ownedFeature(owner, feature.name) == nullptr) {
                absentText = "";
            }
            feature.values.prepare(tables_.texts, absentText);
        }
    }
}

// Whether an association reaches an object from no other but its container.
bool RepositoryModel::isExclusive(MMKey key) const {
    const Fallback& fallback = fallbacks_[key];
    return key != parentKey && key != childrenKey && fallback.inverse == mmUnknownKey &&
           !fallback.hasReferences &&
           (fallback.owned == mmUnknownKey || !fallbacks_[fallback.owned].hasReferences);
}

// A column of the objects of a class that shows nothing yet.
template <class Column>
Column RepositoryModel::columnOf(MMObject object) const {
    Column column;
    column.first = ModelTables::handle(ModelTables::classNumber(object), 0);
    column.count = tables_.classOf(object).objects.size();
    return column;
}

MMTextColumn RepositoryModel::classNameColumn(MMObject object) const {
    auto column = columnOf<MMTextColumn>(object);
    column.texts = &tables_.classNames.name(ModelTables::classNumber(object));
    return column;
}

MMTextColumn RepositoryModel::attributeColumn(MMObject object, MMKey attribute) const {
    auto column = columnOf<MMTextColumn>(object);
    const FeatureRecord* const feature = tables_.classOf(object).find(attribute);
    if (feature != nullptr && !feature->isAssociation) {
        feature->values.show(column);
    }
    return column;
}

MMTargetColumn RepositoryModel::targetColumn(MMObject object, MMKey association) const {
    const ClassRecord& owner = tables_.classOf(object);
    auto column = columnOf<MMTargetColumn>(object);
    const FeatureRecord* const feature = owner.find(association);
    if (feature != nullptr) {
        feature->targets.show(column);
        column.isExclusive = isExclusive(association);
        column.isComplete =
            feature->declared != nullptr || ownedFeature(owner, association) == nullptr;
    }
    return column;
}
