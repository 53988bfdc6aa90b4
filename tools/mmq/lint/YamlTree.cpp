// The library's parser tells of a document by events, from which the tree is built: its own tree
// costs more, and its loop over documents does not end where one begins with a stray comma.
#include "lint/YamlTree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "repository/TextEncoding.h"

namespace mmq {

const char* const yamlQuotingHint =
    "A text that begins with [ { ` \" ' & * ! | > % or @, or holds \": \" or \" #\", stands in "
    "quotes, or on lines of its own behind |.";

namespace {

// The first byte that no YAML text may hold, or the end.
std::size_t findForbidden(std::string_view text) {
    const auto isForbidden = [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return (code < 0x20U && byte != '\t' && byte != '\n' && byte != '\r') || code == 0x7FU;
    };
    const auto control = std::find_if(text.begin(), text.end(), isForbidden);
    return std::min(static_cast<std::size_t>(control - text.begin()), findInvalidUtf8(text));
}

std::size_t offsetOf(const YAML::Mark& mark) {
    return mark.pos < 0 ? 0 : static_cast<std::size_t>(mark.pos);
}

// What aliases may stand for in all: a few of them, one within the other, stand for a file that no
// memory holds.
constexpr std::size_t mostAliased = std::size_t{1024} * 1024;

/// Thrown where a file is well-formed YAML, but none that rules are written in.
struct UnwantedYaml {
    std::size_t offset;
    const char* sentence;
};

}  // namespace

/// Builds the tree of the first document, and refuses a second.
class YamlTreeBuilder : public YAML::EventHandler {
public:
    explicit YamlTreeBuilder(YamlTree& tree) : tree_(tree) {}

    void OnDocumentStart(const YAML::Mark& mark) override {
        if (std::exchange(hasBegun_, true)) {
            throw UnwantedYaml{offsetOf(mark),
                               "A rules file is one YAML document, which ends before this."};
        }
    }
    void OnDocumentEnd() override {}

    void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
        count(add(YamlNode::Kind::nothing, mark, "", anchor));
    }
    void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override {
        const YamlNode& node = *anchors_.at(anchor);
        if (node.isOpen) {
            throw UnwantedYaml{offsetOf(mark), "This alias is a part of what it stands for."};
        }
        aliased_ += node.size;
        if (aliased_ > mostAliased) {
            throw UnwantedYaml{offsetOf(mark),
                               "The aliases up to this one stand for more than 1 MiB of YAML, "
                               "which is too much."};
        }
        attach(node);
        count(node);
    }
    void OnScalar(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                  const std::string& value) override {
        YamlNode& node = add(YamlNode::Kind::text, mark, tag, anchor);
        node.text = value;
        node.size += value.size();
        count(node);
    }
    void OnSequenceStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                         YAML::EmitterStyle::value /*style*/) override {
        open(add(YamlNode::Kind::list, mark, tag, anchor));
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                    YAML::EmitterStyle::value /*style*/) override {
        open(add(YamlNode::Kind::mapping, mark, tag, anchor));
    }
    void OnMapEnd() override { close(); }

private:
    YamlNode& add(YamlNode::Kind kind, const YAML::Mark& mark, const std::string& tag,
                  YAML::anchor_t anchor) {
        YamlNode& node = tree_.nodes_.emplace_back();
        node.kind = kind;
        node.offset = offsetOf(mark);
        node.hasTag = !tag.empty() && tag != "?" && tag != "!";
        if (anchor != YAML::NullAnchor) {
            anchors_[anchor] = &node;
        }
        attach(node);
        return node;
    }

    void attach(const YamlNode& node) {
        if (open_.empty()) {
            tree_.root_ = &node;
        } else {
            open_.back()->children.push_back(&node);
        }
    }

    void open(YamlNode& node) {
        node.isOpen = true;
        open_.push_back(&node);
    }

    void close() {
        YamlNode& node = *open_.back();
        node.isOpen = false;
        open_.pop_back();
        count(node);
    }

    // Counts a node that is whole as a part of the one around it.
    void count(const YamlNode& node) {
        if (!open_.empty()) {
            open_.back()->size += node.size;
        }
    }

    YamlTree& tree_;
    bool hasBegun_ = false;
    std::size_t aliased_ = 0;
    std::vector<YamlNode*> open_;
    std::unordered_map<YAML::anchor_t, const YamlNode*> anchors_;
};

YamlTree::YamlTree(FileErrors& errors) {
    const std::string& text = errors.file()->text();
    const std::size_t forbidden = findForbidden(text);
    if (forbidden < text.size()) {
        errors.add(forbidden, "A rules file is UTF-8 text without control characters.");
    } else {
        parse(errors);
        if (errors.isEmpty() && root_ == nullptr) {
            errors.add(0, "The file is empty.");
        }
    }
    root_ = errors.isEmpty() ? root_ : nullptr;
}

void YamlTree::parse(FileErrors& errors) {
    const std::size_t size = errors.file()->text().size();
    try {
        std::istringstream stream(errors.file()->text());
        YAML::Parser parser(stream);
        YamlTreeBuilder builder(*this);
        while (parser.HandleNextDocument(builder)) {
            // The second one throws.
        }
    } catch (const UnwantedYaml& unwanted) {
        errors.add(std::min(unwanted.offset, size), unwanted.sentence);
    } catch (const YAML::Exception& exception) {
        // The library has no other words for a document that is too deep.
        const bool isDeep = exception.msg == YAML::ErrorMsg::BAD_FILE;
        errors.add(std::min(offsetOf(exception.mark), size),
                   isDeep ? "It is nested too deeply."
                          : "This is not well-formed YAML: " + exception.msg + ".");
        if (!isDeep) {
            errors.addHint(yamlQuotingHint);
        }
    }
}

}  // namespace mmq
