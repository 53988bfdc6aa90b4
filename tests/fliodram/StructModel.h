// A model over structs of its own, small enough to read: what a host's looks like.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "fliodram/MMModel.h"

/// An object of the tests: its handle is its address.
struct Thing {
    std::string kind;
    std::string id;
    std::map<std::string, std::string> attributes;
    std::map<std::string, std::vector<MMObject>> associations;
    Thing* parent = nullptr;

    MMObject handle() const { return reinterpret_cast<MMObject>(this); }
};

/// Shows a vector of things, which belongs to the test, as a model. Names are numbered as they are
/// asked for; attributes are copied into the buffer, so that the buffered way is tried as well.
class StructModel : public MMModel {
public:
    explicit StructModel(const std::vector<Thing>& things) : things_(things) {}

    MMKey classKey(std::string_view name) const override { return keyOf(name); }
    MMKey attributeKey(std::string_view name) const override { return keyOf(name); }
    MMKey associationKey(std::string_view name) const override { return keyOf(name); }

    std::string_view className(MMObject object) const override { return at(object).kind; }
    std::string_view uid(MMObject object, std::string& /*buffer*/) const override {
        return at(object).id;
    }
    std::string_view attribute(MMObject object, MMKey key, std::string& buffer) const override {
        const auto found = at(object).attributes.find(names_[key]);
        buffer = found != at(object).attributes.end() ? found->second : "";
        return buffer;
    }
    MMObjectRange targets(MMObject object, MMKey key,
                          std::vector<MMObject>& buffer) const override {
        const auto found = at(object).associations.find(names_[key]);
        if (found != at(object).associations.end()) {
            buffer = found->second;
        }
        return {buffer.data(), buffer.data() + buffer.size(), false};
    }
    MMObjectRange instances(MMObject /*object*/, MMKey key,
                            std::vector<MMObject>& buffer) const override {
        for (const Thing& thing : things_) {
            if (thing.kind == names_[key]) {
                buffer.push_back(thing.handle());
            }
        }
        return {buffer.data(), buffer.data() + buffer.size(), true};
    }
    MMObject outermost(MMObject object) const override {
        const Thing* thing = &at(object);
        while (thing->parent != nullptr) {
            thing = thing->parent;
        }
        return thing->handle();
    }

    using MMModel::renewKeys;

private:
    static const Thing& at(MMObject object) { return *reinterpret_cast<const Thing*>(object); }

    MMKey keyOf(std::string_view name) const {
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (names_[i] == name) {
                return static_cast<MMKey>(i);
            }
        }
        names_.emplace_back(name);
        return static_cast<MMKey>(names_.size() - 1);
    }

    const std::vector<Thing>& things_;
    mutable std::vector<std::string> names_;
};
