// Objects that know how many of them are alive, for tests of ownership.
#pragma once

#include <deque>
#include <stdexcept>

#include "foundation/OrvCyclicPtr.h"
#include "foundation/OrvObject.h"
#include "foundation/OrvSimplePtr.h"

/// Counts the living objects of all tracked classes.
struct Tracked {
    static inline int alive = 0;
    Tracked() { ++alive; }
    Tracked(const Tracked& /*other*/) { ++alive; }
    Tracked& operator=(const Tracked&) = default;
    ~Tracked() { --alive; }
};

/// A body with any number of links to other bodies.
class Node : public OrvObject, public OrvCyclicPtrBody {
public:
    Node() : link_(*this) {}
    explicit Node(const OrvCyclicPtr<Node>& target) : link_(*this, target) {}
    Node(const Node& other) : OrvObject(other), OrvCyclicPtrBody(other), link_(*this) {}

    void setLink(const OrvCyclicPtr<Node>& target) { link_ = target; }
    void addLink(const OrvCyclicPtr<Node>& target) { links_.emplace_back(*this, target); }
    OrvCyclicPtr<Node> getLink() const { return link_; }

private:
    Tracked tracked_;
    OrvCyclicMember<Node> link_;
    std::deque<OrvCyclicMember<Node>> links_;
};

using NodePtr = OrvCyclicPtr<Node>;

inline NodePtr makeNode() { return NodePtr(new Node); }
