// Classes and what they inherit from.
#pragma once

#include <string>
#include <vector>

#include "names/ClassSet.h"

namespace mmq {

/// Numbers classes, from 0, and knows which inherits from which. Inheritance may go round in a
/// circle. Several classes may have one name: they are of different metamodels.
class ClassGraph {
public:
    ClassNumber add(const std::string& name);
    void addSupertype(ClassNumber heir, ClassNumber supertype);

    const std::string& name(ClassNumber number) const { return nodes_[number].name; }

    /// The classes with all that they inherit from, or with all that inherit from them.
    ClassSet withSupertypes(const ClassSet& classes) const {
        return closure(classes, &Node::supertypes);
    }
    ClassSet withHeirs(const ClassSet& classes) const { return closure(classes, &Node::heirs); }

private:
    struct Node {
        std::string name;
        std::vector<ClassNumber> supertypes;
        std::vector<ClassNumber> heirs;
    };

    ClassSet closure(const ClassSet& classes, std::vector<ClassNumber> Node::*next) const;

    std::vector<Node> nodes_;
};

}  // namespace mmq
