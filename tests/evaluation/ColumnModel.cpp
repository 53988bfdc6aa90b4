#include "evaluation/ColumnModel.h"

#include <algorithm>
#include <set>
#include <string>

MMObjectRange ColumnModel::targets(MMObject object, MMKey key,
                                   std::vector<MMObject>& buffer) const {
    (void)view().targets(thingOf(object).handle(), key, buffer);
    std::transform(buffer.begin(), buffer.end(), buffer.begin(),
                   [this](MMObject target) { return toOwn(target); });
    return {buffer.data(), buffer.data() + buffer.size()};
}

MMObjectRange ColumnModel::instances(MMObject /*object*/, MMKey key,
                                     std::vector<MMObject>& buffer) const {
    const MMObjectRange found = view().instances(mmNoObject, key, buffer);
    std::transform(buffer.begin(), buffer.end(), buffer.begin(),
                   [this](MMObject target) { return toOwn(target); });
    return found;
}

MMObject ColumnModel::outermost(MMObject object) const {
    return toOwn(view().outermost(thingOf(object).handle()));
}

MMTextColumn ColumnModel::classNameColumn(MMObject object) const {
    for (const Thing& thing : model_.things()) {
        classNames_.resize(model_.things().size());
        classNames_[handleOf(thing) - 1] = thing.kind;
    }
    MMTextColumn column{object, 1, &classNames_[object - 1]};
    while (column.first > 1 && thingOf(column.first - 1).kind == thingOf(object).kind) {
        --column.first;
        ++column.count;
    }
    return column;
}

ColumnModel::Texts ColumnModel::collectTexts(MMKey key) const {
    Texts texts;
    for (const Thing& thing : model_.things()) {
        std::string buffer;
        texts.values.emplace_back(view().attribute(thing.handle(), key, buffer));
        const std::string& value = texts.values.back();
        texts.codes.push_back(static_cast<std::uint8_t>(texts.codes.size()));
        texts.places.push_back({static_cast<std::uint32_t>(texts.joined.size()),
                                static_cast<std::uint32_t>(value.size())});
        texts.joined += value;
    }
    for (const std::string& value : texts.values) {
        texts.views.emplace_back(value.empty() ? std::string_view() : std::string_view(value));
    }
    texts.places[texts.places.size() / 2].length = MMTextPlace::elsewhere;
    return texts;
}

MMTextColumn ColumnModel::attributeColumn(MMObject /*object*/, MMKey key) const {
    std::unique_ptr<Texts>& texts = texts_[key];
    texts = texts != nullptr ? std::move(texts) : std::make_unique<Texts>(collectTexts(key));
    MMTextColumn column;
    column.first = 1;
    column.count = model_.things().size() - key % 2;
    if (key % 3 == 0) {
        column.codes = texts->codes.data();
        column.texts = texts->views.data();
    } else if (key % 3 == 1) {
        column.places = texts->places.data();
        column.base = texts->joined.data();
    }
    return column;
}

ColumnModel::Targets ColumnModel::collectTargets(MMKey key) const {
    Targets result;
    std::set<MMObject> ofOthers;
    for (const Thing& thing : model_.things()) {
        std::vector<MMObject> own;
        (void)targets(handleOf(thing), key, own);
        result.offsets.push_back(static_cast<std::uint32_t>(result.targets.size()));
        result.targets.insert(result.targets.end(), own.begin(), own.end());
        const std::set<MMObject> distinct(own.begin(), own.end());
        result.isDistinct = result.isDistinct && distinct.size() == own.size();
        for (const MMObject target : distinct) {
            result.isExclusive = ofOthers.insert(target).second && result.isExclusive;
        }
    }
    result.offsets.push_back(static_cast<std::uint32_t>(result.targets.size()));
    return result;
}

MMTargetColumn ColumnModel::targetColumn(MMObject /*object*/, MMKey key) const {
    std::unique_ptr<Targets>& targets = targets_[key];
    targets =
        targets != nullptr ? std::move(targets) : std::make_unique<Targets>(collectTargets(key));
    return {1,
            model_.things().size(),
            targets->offsets.data(),
            targets->targets.data(),
            targets->isDistinct,
            targets->isExclusive,
            key % 2 == 0};
}
