// The YAML of a file as a tree.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "lint/FileErrors.h"

namespace mmq {

/// What to write in another way where YAML takes a text for something else.
extern const char* const yamlQuotingHint;

/// A piece of YAML with its place. Belongs to its tree.
struct YamlNode {
    enum class Kind { nothing, text, list, mapping };

    Kind kind = Kind::nothing;
    std::size_t offset = 0;
    std::string text;
    bool hasTag = false;  ///< of the file's own, such as "!!binary"
    /// About the bytes that it would have if every alias were written out.
    std::size_t size = 8;
    bool isOpen = false;  ///< while it is read
    /// The elements of a list; the keys and values of a mapping, in turn. What an alias stands for
    /// is the same node again.
    std::vector<const YamlNode*> children;

    bool isText() const { return kind == Kind::text; }
    bool isList() const { return kind == Kind::list; }
    bool isMapping() const { return kind == Kind::mapping; }
};

/// The one document of a YAML file. Its nodes live as long as it does.
class YamlTree {
public:
    /// Parses the file of the errors. Adds an error where it is not UTF-8, is no YAML, or more than
    /// one document, or where its aliases stand for very much; the tree is empty then.
    explicit YamlTree(FileErrors& errors);

    /// Null where there is none.
    const YamlNode* root() const { return root_; }

private:
    friend class YamlTreeBuilder;

    void parse(FileErrors& errors);

    std::deque<YamlNode> nodes_;
    const YamlNode* root_ = nullptr;
};

}  // namespace mmq
