#include "repository/ModelTables.h"

std::string_view ModelTables::nameOf(MMObject object) const {
    const ClassRecord& owner = classOf(object);
    if (owner.nameFeature == FeatureMap::none) {
        return {};
    }
    return owner.features[owner.nameFeature].values.view(index(object), texts);
}

MMObjectRange ModelTables::childrenOf(ObjectNumber number) const {
    const ObjectRecord& record = records[number];
    const MMObject* const first = children.data() + record.firstChild;
    return {first, first + record.childCount, true};
}
