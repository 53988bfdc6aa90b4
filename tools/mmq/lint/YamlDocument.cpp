#include "lint/YamlDocument.h"

#include <algorithm>
#include <set>

#include "lint/ScalarOrigin.h"

namespace mmq {

namespace {

std::string listed(const std::vector<YamlKey>& keys) {
    std::string list;
    for (const YamlKey& key : keys) {
        list += (list.empty() ? "" : ", ") + key.name;
    }
    return list;
}

}  // namespace

void YamlDocument::fail(const YamlNode& node, const std::string& sentence) {
    if (node.isText()) {
        const TextOrigin origin = originOfScalar(errors_.file(), node.offset, node.text);
        const std::size_t end = node.text.find_last_not_of(" \t\r\n") + 1;
        errors_.add(node.offset, origin.offsets[end], sentence);
    } else {
        errors_.add(node.offset, sentence);
    }
}

void YamlDocument::readMapping(const YamlNode& node, const std::string& what,
                               const std::vector<YamlKey>& keys) {
    std::set<std::string> seen;
    readPairs(node, what, [&](const LocatedText& key, const YamlNode& value) {
        seen.insert(key.text);
        const auto known = std::find_if(keys.begin(), keys.end(), [&key](const YamlKey& candidate) {
            return candidate.name == key.text;
        });
        if (known == keys.end()) {
            errors_.add(key, what + " has no key " + inQuotes(key.text) + "; there are " +
                                 listed(keys) + ".");
        } else {
            known->read(value);
        }
    });
    for (const YamlKey& key : keys) {
        if (node.isMapping() && key.isRequired && seen.count(key.name) == 0) {
            fail(node, what + " needs the key " + inQuotes(key.name) + ".");
        }
    }
}

void YamlDocument::readList(const YamlNode& node, const std::string& what,
                            const std::function<void(const YamlNode&)>& read) {
    if (!node.isList() || node.children.empty()) {
        fail(node, what + " is a list with an entry or more.");
        return;
    }
    for (const YamlNode* element : node.children) {
        read(*element);
    }
}

void YamlDocument::readPairs(
    const YamlNode& node, const std::string& what,
    const std::function<void(const LocatedText& key, const YamlNode& value)>& read) {
    if (!node.isMapping()) {
        fail(node, what + " consists of keys with values.");
        return;
    }
    std::set<std::string> seen;
    for (std::size_t i = 0; i + 1 < node.children.size(); i += 2) {
        const std::optional<LocatedText> key = readText(*node.children[i], "A key");
        if (key && !seen.insert(key->text).second) {
            fail(*node.children[i], "The key " + inQuotes(key->text) + " stands here twice.");
        } else if (key) {
            read(*key, *node.children[i + 1]);
        }
    }
}

std::optional<LocatedText> YamlDocument::readText(const YamlNode& node, const std::string& what) {
    if (!node.isText() || node.hasTag) {
        fail(node, what + " is a text.");
        if (node.isMapping() || node.isList()) {
            errors_.addHint(yamlQuotingHint);
        }
        return {};
    }
    std::string text = node.text;
    text.resize(text.find_last_not_of(" \t\r\n") + 1);
    if (text.empty()) {
        fail(node, what + " is empty.");
        return {};
    }
    TextOrigin origin = originOfScalar(errors_.file(), node.offset, text);
    return LocatedText{std::move(text), std::move(origin)};
}

}  // namespace mmq
