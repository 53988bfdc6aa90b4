#include "repository/ModelTables.h"

std::string_view ModelTables::nameOf(MMObject object) const {
    const ClassRecord& owner = classOf(object);
    if (owner.nameFeature == FeatureMap::none) {
        return {};
    }
    const TextRef name = owner.features[owner.nameFeature].values.at(index(object));
    return name.isAbsent() ? std::string_view() : texts.view(name);
}

MMObjectRange ModelTables::childrenOf(ObjectNumber number) const {
    const ObjectRecord& record = records[number];
    const MMObject* const first = children.data() + record.firstChild;
    return {first, first + record.childCount, true};
}
