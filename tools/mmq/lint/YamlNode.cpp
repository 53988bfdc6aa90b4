#include "lint/YamlNode.h"

#include <algorithm>
#include <set>

#include "lint/ScalarOrigin.h"
#include "repository/TextEncoding.h"

namespace mmq {

namespace {

constexpr const char* quotingHint =
    "A text that begins with [ { ` \" ' & * ! | > % or @, or holds \": \" or \" #\", stands in "
    "quotes, or on lines of its own behind |.";

// The first byte that no YAML text may hold, or the end.
std::size_t findForbidden(std::string_view text) {
    const auto isForbidden = [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return (code < 0x20U && byte != '\t' && byte != '\n' && byte != '\r') || code == 0x7FU;
    };
    const auto control = std::find_if(text.begin(), text.end(), isForbidden);
    return std::min(static_cast<std::size_t>(control - text.begin()), findInvalidUtf8(text));
}

std::string listed(const std::vector<YamlKey>& keys) {
    std::string list;
    for (const YamlKey& key : keys) {
        list += (list.empty() ? "" : ", ") + key.name;
    }
    return list;
}

}  // namespace

void FileErrors::add(std::size_t offset, const std::string& sentence) {
    add(offset, endOfLine(file_->text(), offset), sentence);
}

void FileErrors::add(std::size_t offset, std::size_t endOffset, const std::string& sentence) {
    const TextPlace place = file_->place(offset);
    sink_.write({file_->name(), static_cast<int>(place.line), static_cast<int>(place.column),
                 file_->excerpt(offset), offset, endOffset},
                messageSource, sentence, ExprParserDialogs::Error, false);
    ++count_;
}

void FileErrors::addHint(const std::string& hint) const {
    sink_.writeHint({file_->name(), 0, 0, ""}, hint);
}

std::optional<YAML::Node> YamlDocument::load() {
    const std::string& text = errors_.file()->text();
    const std::size_t forbidden = findForbidden(text);
    if (forbidden < text.size()) {
        errors_.add(forbidden, "A rules file is UTF-8 text without control characters.");
        return {};
    }
    try {
        const std::vector<YAML::Node> documents = YAML::LoadAll(text);
        if (documents.size() > 1) {
            fail(documents[1], "A rules file is one YAML document, and this begins another.");
            return {};
        }
        if (!documents.empty()) {
            return documents.front();
        }
        errors_.add(0, "The file is empty.");
    } catch (const YAML::Exception& exception) {
        // The library has no other words for a document that is too deep.
        const bool isDeep = exception.msg == YAML::ErrorMsg::BAD_FILE;
        errors_.add(offset(exception.mark),
                    isDeep ? "It is nested too deeply."
                           : "This is not well-formed YAML: " + exception.msg + ".");
        if (!isDeep) {
            errors_.addHint(quotingHint);
        }
    }
    return {};
}

std::size_t YamlDocument::offset(const YAML::Mark& mark) const {
    return mark.pos < 0
               ? 0
               : std::min(static_cast<std::size_t>(mark.pos), errors_.file()->text().size());
}

std::size_t YamlDocument::offset(const YAML::Node& node) const { return offset(node.Mark()); }

void YamlDocument::fail(const YAML::Node& node, const std::string& sentence) {
    if (node.IsScalar()) {
        const std::string& text = node.Scalar();
        const TextOrigin origin = originOfScalar(errors_.file(), offset(node), text);
        errors_.add(offset(node), origin.offsets[text.find_last_not_of(" \t\r\n") + 1], sentence);
    } else {
        errors_.add(offset(node), sentence);
    }
}

void YamlDocument::readMapping(const YAML::Node& node, const std::string& what,
                               const std::vector<YamlKey>& keys) {
    std::set<std::string> seen;
    readPairs(node, what, [&](const LocatedText& key, const YAML::Node& value) {
        seen.insert(key.text);
        const auto known = std::find_if(keys.begin(), keys.end(), [&key](const YamlKey& candidate) {
            return candidate.name == key.text;
        });
        if (known == keys.end()) {
            errors_.add(key, what + " has no key " + quoted(key.text) + "; there are " +
                                 listed(keys) + ".");
        } else {
            known->read(value);
        }
    });
    for (const YamlKey& key : keys) {
        if (node.IsMap() && key.isRequired && seen.count(key.name) == 0) {
            fail(node, what + " needs the key " + quoted(key.name) + ".");
        }
    }
}

void YamlDocument::readList(const YAML::Node& node, const std::string& what,
                            const std::function<void(const YAML::Node&)>& read) {
    if (!node.IsSequence() || node.size() == 0) {
        fail(node, what + " is a list with an entry or more.");
        return;
    }
    for (const YAML::Node& element : node) {
        read(element);
    }
}

void YamlDocument::readPairs(
    const YAML::Node& node, const std::string& what,
    const std::function<void(const LocatedText& key, const YAML::Node& value)>& read) {
    if (!node.IsMap()) {
        fail(node, what + " consists of keys with values.");
        return;
    }
    std::set<std::string> seen;
    for (const auto& pair : node) {
        const std::optional<LocatedText> key = readText(pair.first, "A key");
        if (key && !seen.insert(key->text).second) {
            fail(pair.first, "The key " + quoted(key->text) + " stands here twice.");
        } else if (key) {
            read(*key, pair.second);
        }
    }
}

std::optional<LocatedText> YamlDocument::readText(const YAML::Node& node, const std::string& what) {
    if (!node.IsScalar() || (node.Tag() != "?" && node.Tag() != "!")) {
        fail(node, what + " is a text.");
        if (node.IsMap() || node.IsSequence()) {
            errors_.addHint(quotingHint);
        }
        return {};
    }
    std::string text = node.Scalar();
    text.resize(text.find_last_not_of(" \t\r\n") + 1);
    if (text.empty()) {
        fail(node, what + " is empty.");
        return {};
    }
    TextOrigin origin = originOfScalar(errors_.file(), offset(node), text);
    return LocatedText{std::move(text), std::move(origin)};
}

}  // namespace mmq
