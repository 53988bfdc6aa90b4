#include "fliodram/MMFeatureReader.h"

std::string_view MMAttributeReader::ask(MMEvaluationContext& context, std::string_view name,
                                        MMObject object, std::string& buffer) {
    const MMModel& model = context.getModel();
    if (model_ != model.identity()) {
        key_ = model.attributeKey(name);
        column_ = {};
        model_ = model.identity();
    }
    if (key_ == mmUnknownKey || object == mmNoObject) {
        return {};
    }
    std::string_view text;
    if (model.hasColumns() && !column_.covers(object)) {
        column_ = model.attributeColumn(object, key_);
        if (column_.read(object, text)) {
            return text;
        }
    }
    buffer.clear();
    return model.attributeWithin(context, object, key_, buffer);
}

std::string_view MMClassNameReader::ask(const MMModel& model, MMObject object) {
    if (object == mmNoObject) {
        return {};
    }
    if (model.hasColumns()) {
        column_ = model.classNameColumn(object);
        model_ = model.identity();
    }
    return model.className(object);
}

MMObjectRange MMTargetReader::ask(MMEvaluationContext& context, std::string_view name,
                                  MMObject object, std::vector<MMObject>& buffer) {
    const MMModel& model = context.getModel();
    if (model_ != model.identity()) {
        key_ = model.associationKey(name);
        column_ = {};
        model_ = model.identity();
    }
    if (key_ == mmUnknownKey || object == mmNoObject) {
        return {};
    }
    MMObjectRange targets;
    if (model.hasColumns() && !column_.covers(object)) {
        column_ = model.targetColumn(object, key_);
        if (column_.read(object, targets)) {
            return targets;
        }
    }
    targets = model.targets(object, key_, buffer);
    context.countBytes(buffer.size() * sizeof(MMObject));
    return targets;
}
