#include "names/ClassGraph.h"

namespace mmq {

ClassNumber ClassGraph::add(const std::string& name) {
    nodes_.push_back({name, {}, {}});
    return static_cast<ClassNumber>(nodes_.size() - 1);
}

void ClassGraph::addSupertype(ClassNumber heir, ClassNumber supertype) {
    nodes_[heir].supertypes.push_back(supertype);
    nodes_[supertype].heirs.push_back(heir);
}

ClassSet ClassGraph::closure(const ClassSet& classes, std::vector<ClassNumber> Node::*next) const {
    ClassSet result = classes;
    std::vector<ClassNumber> pending;
    classes.forEach([&pending](ClassNumber number) { pending.push_back(number); });
    while (!pending.empty()) {
        const Node& node = nodes_[pending.back()];
        pending.pop_back();
        for (const ClassNumber number : node.*next) {
            if (!result.contains(number)) {
                result.insert(number);
                pending.push_back(number);
            }
        }
    }
    return result;
}

}  // namespace mmq
