// Folders and files as a model, over structs that know nothing of it.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "fliodram/MMModel.h"

struct Entry {
    std::string path, name, size;  // a folder has no size
    const Entry* parent = nullptr;
    std::vector<MMObject> entries;
};

/// Shows the caller's entries, the outermost first: the classes Folder and File, the attributes
/// name and size, the associations entries and parent. An object's handle is its address.
class FolderModel : public MMModel {
public:
    explicit FolderModel(const std::deque<Entry>& entries) : entries_(entries) {}
    static MMObject handle(const Entry* entry) { return reinterpret_cast<MMObject>(entry); }

    MMKey classKey(std::string_view name) const override { return key(name, "Folder", "File"); }
    MMKey attributeKey(std::string_view name) const override { return key(name, "name", "size"); }
    MMKey associationKey(std::string_view name) const override {
        return key(name, "entries", "parent");
    }
    std::string_view className(MMObject object) const override {
        return at(object).size.empty() ? "Folder" : "File";
    }
    std::string_view uid(MMObject object, std::string&) const override { return at(object).path; }
    std::string_view attribute(MMObject object, MMKey key, std::string&) const override {
        return key == 0 ? at(object).name : at(object).size;
    }
    MMObjectRange targets(MMObject object, MMKey key,
                          std::vector<MMObject>& buffer) const override {
        buffer.assign(at(object).parent == nullptr ? 0 : 1, handle(at(object).parent));
        return range(key == 0 ? at(object).entries : buffer);
    }
    MMObjectRange instances(MMObject, MMKey key, std::vector<MMObject>& buffer) const override {
        for (const Entry& entry : entries_) {
            if (entry.size.empty() == (key == 0)) {
                buffer.push_back(handle(&entry));
            }
        }
        return range(buffer);
    }
    MMObject outermost(MMObject) const override { return handle(&entries_.front()); }

private:
    static const Entry& at(MMObject object) { return *reinterpret_cast<const Entry*>(object); }
    static MMKey key(std::string_view name, std::string_view first, std::string_view second) {
        return name == first ? 0 : name == second ? 1 : mmUnknownKey;
    }
    static MMObjectRange range(const std::vector<MMObject>& list) {
        return {list.data(), list.data() + list.size(), true};
    }
    const std::deque<Entry>& entries_;
};
