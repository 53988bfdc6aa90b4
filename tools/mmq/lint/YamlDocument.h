// Reading YAML by what is expected of it, with an error for everything else.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lint/Rule.h"
#include "lint/YamlTree.h"

namespace mmq {

/// A key that a mapping may have, and what is done with its value.
struct YamlKey {
    std::string name;
    bool isRequired = false;
    std::function<void(const YamlNode& value)> read;
};

/// Reads nodes of one document. Every operation adds an error where a node is not what is expected.
class YamlDocument {
public:
    explicit YamlDocument(FileErrors& errors) : errors_(errors) {}

    /// Reads a mapping: each key at most once, none but these. `what` names it in messages, such as
    /// "A rule".
    void readMapping(const YamlNode& node, const std::string& what,
                     const std::vector<YamlKey>& keys);
    /// Calls `read` for every element of a list, which `what` names in messages.
    void readList(const YamlNode& node, const std::string& what,
                  const std::function<void(const YamlNode&)>& read);
    /// Calls `read` for every pair of a mapping with keys of the file's own.
    void readPairs(const YamlNode& node, const std::string& what,
                   const std::function<void(const LocatedText& key, const YamlNode& value)>& read);
    /// A text that is not empty; white space at its end is dropped.
    std::optional<LocatedText> readText(const YamlNode& node, const std::string& what);

    /// Adds an error about a node: about all of it where it is a text.
    void fail(const YamlNode& node, const std::string& sentence);
    FileErrors& errors() { return errors_; }

private:
    FileErrors& errors_;
};

}  // namespace mmq
