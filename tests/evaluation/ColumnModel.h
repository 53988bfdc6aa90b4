// The small model once more, as a host shows it that keeps values and targets side by side.
#pragma once

#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "evaluation/SmallModel.h"
#include "fliodram/MMColumn.h"

/// Offers columns over the objects of a small model, which must outlive it; a handle is the number
/// of the object in the table, from 1. Columns come in all their forms, by the number of their
/// key: codes or places, complete or not, and with gaps for which it has to be asked. Belongs to
/// one thread.
class ColumnModel final : public MMModel {
public:
    explicit ColumnModel(const SmallModel& model) : model_(model) { offerColumns(); }

    MMObject handleOf(const Thing& thing) const {
        return static_cast<MMObject>(&thing - model_.things().data()) + 1;
    }
    const Thing& thingOf(MMObject object) const { return model_.things()[object - 1]; }

    MMKey classKey(std::string_view name) const override { return view().classKey(name); }
    MMKey attributeKey(std::string_view name) const override { return view().attributeKey(name); }
    MMKey associationKey(std::string_view name) const override {
        return view().associationKey(name);
    }
    std::string_view className(MMObject object) const override { return thingOf(object).kind; }
    std::string_view uid(MMObject object, std::string& /*buffer*/) const override {
        return thingOf(object).id;
    }
    std::string_view attribute(MMObject object, MMKey key, std::string& buffer) const override {
        return view().attribute(thingOf(object).handle(), key, buffer);
    }
    MMObjectRange targets(MMObject object, MMKey key, std::vector<MMObject>& buffer) const override;
    MMObjectRange instances(MMObject object, MMKey key,
                            std::vector<MMObject>& buffer) const override;
    MMObject outermost(MMObject object) const override;
    MMTextColumn classNameColumn(MMObject object) const override;
    MMTextColumn attributeColumn(MMObject object, MMKey key) const override;
    MMTargetColumn targetColumn(MMObject object, MMKey key) const override;

private:
    struct Texts {
        std::vector<std::string> values;
        std::vector<std::string_view> views;
        std::vector<std::uint8_t> codes;
        std::vector<MMTextPlace> places;
        std::string joined;
    };
    struct Targets {
        std::vector<std::uint32_t> offsets;
        std::vector<MMObject> targets;
        bool isDistinct = true;
        bool isExclusive = true;
    };

    const StructModel& view() const { return model_.view(); }
    MMObject toOwn(MMObject object) const {
        return handleOf(*reinterpret_cast<const Thing*>(object));
    }
    Texts collectTexts(MMKey key) const;
    Targets collectTargets(MMKey key) const;

    const SmallModel& model_;
    mutable std::vector<std::string_view> classNames_;
    mutable std::map<MMKey, std::unique_ptr<Texts>> texts_;
    mutable std::map<MMKey, std::unique_ptr<Targets>> targets_;
};
