// Objects and the links between them as a picture.
#pragma once

#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "Options.h"
#include "repository/RepositoryModel.h"
#include "why/Reach.h"

namespace mmq {

/// A graph of objects in the order in which they were added, each once, and of links, each once.
/// Borrows the model.
class Drawing {
public:
    explicit Drawing(const RepositoryModel& model) : model_(model) {}

    /// Adds what paths reached, and which of the objects are results.
    void add(const Reach& reach, const std::vector<MMObject>& results);

    /// The drawing in the language of Mermaid, or of Graphviz: a box an object, an arrow a link,
    /// results with a bold frame.
    std::string mermaid() const;
    std::string dot() const;

private:
    struct Node {
        std::string label;
        bool isResult = false;
    };
    struct Arrow {
        std::size_t from;
        std::string association;
        std::size_t to;
        auto key() const { return std::tie(from, association, to); }
        bool operator<(const Arrow& other) const { return key() < other.key(); }
    };

    std::size_t nodeOf(MMObject object);
    std::string labelOf(MMObject object) const;

    const RepositoryModel& model_;
    std::vector<Node> nodes_;
    std::unordered_map<MMObject, std::size_t> numbers_;
    std::vector<Arrow> arrows_;
    std::set<Arrow> known_;
};

}  // namespace mmq
