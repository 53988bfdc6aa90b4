// Reading YAML by what is expected of it, with an error for everything else.
#pragma once

#include <yaml-cpp/yaml.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Messages.h"
#include "lint/Rule.h"

namespace mmq {

/// Takes the errors of one file: hands each on as it comes, with its place, and counts them.
/// Borrows the sink.
class FileErrors {
public:
    FileErrors(std::shared_ptr<const SourceFile> file, MessageSink& sink)
        : file_(std::move(file)), sink_(sink) {}

    const std::shared_ptr<const SourceFile>& file() const { return file_; }
    bool isEmpty() const { return count_ == 0; }

    /// An error about what begins at `offset`, up to the end of its line or to `endOffset`.
    void add(std::size_t offset, const std::string& sentence);
    void add(std::size_t offset, std::size_t endOffset, const std::string& sentence);
    void add(const LocatedText& text, const std::string& sentence) {
        add(text.origin.offsets.front(), text.origin.offsets.back(), sentence);
    }
    void addHint(const std::string& hint) const;

private:
    std::shared_ptr<const SourceFile> file_;
    MessageSink& sink_;
    int count_ = 0;
};

/// A key that a mapping may have, and what is done with its value.
struct YamlKey {
    std::string name;
    bool isRequired = false;
    std::function<void(const YAML::Node& value)> read;
};

/// Reads nodes of one document. Every operation adds an error where a node is not what is expected.
/// No exception of the YAML library leaves it.
class YamlDocument {
public:
    explicit YamlDocument(FileErrors& errors) : errors_(errors) {}

    /// The root of the document; nothing where the file is no YAML, or more than one document.
    std::optional<YAML::Node> load();

    /// Reads a mapping: each key at most once, none but these. `what` names it in messages, such as
    /// "A rule".
    void readMapping(const YAML::Node& node, const std::string& what,
                     const std::vector<YamlKey>& keys);
    /// Calls `read` for every element of a list, which `what` names in messages.
    void readList(const YAML::Node& node, const std::string& what,
                  const std::function<void(const YAML::Node&)>& read);
    /// Calls `read` for every pair of a mapping with keys of the file's own.
    void readPairs(
        const YAML::Node& node, const std::string& what,
        const std::function<void(const LocatedText& key, const YAML::Node& value)>& read);
    /// A text that is not empty; white space at its end is dropped.
    std::optional<LocatedText> readText(const YAML::Node& node, const std::string& what);

    std::size_t offset(const YAML::Node& node) const;
    /// Adds an error about a node: about all of it where it is a text.
    void fail(const YAML::Node& node, const std::string& sentence);
    FileErrors& errors() { return errors_; }

private:
    std::size_t offset(const YAML::Mark& mark) const;

    FileErrors& errors_;
};

}  // namespace mmq
