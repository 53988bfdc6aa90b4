// The groups in which the bodies of a graph live and die.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "foundation/OrvConverter.h"
#include "foundation/Tracked.h"
#include "support/OrvAssertion.h"

namespace {

class Group : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Tracked::alive, 0); }
};

TEST_F(Group, CycleGoesWithItsLastHold) {
    NodePtr first = makeNode();
    NodePtr second(new Node(first));
    first->setLink(second);
    EXPECT_TRUE(first->isJoinedWith(*second));
    first = nullptr;
    EXPECT_EQ(Tracked::alive, 2);
    second = nullptr;
    EXPECT_EQ(Tracked::alive, 0);
}

TEST_F(Group, BodyThatNobodyReadsLivesWithItsGroup) {
    NodePtr kept = makeNode();
    const Node* dropped = nullptr;
    {
        const NodePtr other = makeNode();
        kept->setLink(other);
        dropped = other.get();
    }
    kept->setLink(nullptr);
    EXPECT_EQ(Tracked::alive, 2);
    EXPECT_TRUE(kept->isJoinedWith(*dropped));
}

TEST_F(Group, MembersInLists) {
    const NodePtr hub = makeNode();
    for (int i = 0; i < 100; ++i) {
        hub->addLink(makeNode());
    }
    EXPECT_EQ(Tracked::alive, 101);
}

TEST_F(Group, CopyOfABodyIsAlone) {
    NodePtr original(new Node(makeNode()));
    original->becomeOwned();
    const NodePtr copy(new Node(*original));
    EXPECT_FALSE(copy->isOwned());
    EXPECT_FALSE(copy->isJoinedWith(*original));
    original = nullptr;
    EXPECT_EQ(Tracked::alive, 1);
}

TEST_F(Group, AssignmentOfPointers) {
    NodePtr pointer = makeNode();
    const NodePtr& alias = pointer;
    pointer = alias;
    EXPECT_EQ(Tracked::alive, 1);
    pointer = std::move(pointer);
    EXPECT_EQ(Tracked::alive, 1);
    pointer = makeNode();
    EXPECT_EQ(Tracked::alive, 1);
    pointer->setLink(pointer);
    pointer->setLink(pointer);
}

TEST_F(Group, LoanCountsNothing) {
    NodePtr node = makeNode();
    NodePtr kept;
    {
        const OrvCyclicLoan<Node> loan(node.get());
        const NodePtr& lent = loan;
        EXPECT_EQ(lent.get(), node.get());
        kept = lent;
        node = nullptr;
        EXPECT_EQ(Tracked::alive, 1) << "what was made of the loan holds";
    }
    EXPECT_EQ(Tracked::alive, 1);
    kept = nullptr;
    EXPECT_EQ(Tracked::alive, 0) << "and the loan left no hold";
}

class ThrowingNode : public Node {
public:
    explicit ThrowingNode(const NodePtr& target) : Node(target) { throw std::runtime_error("no"); }
};

TEST_F(Group, ConstructorThatThrowsAfterJoining) {
    NodePtr target = makeNode();
    EXPECT_THROW(new ThrowingNode(target), std::runtime_error);
    EXPECT_THROW(new ThrowingNode(makeNode()), std::runtime_error);
    EXPECT_EQ(Tracked::alive, 1);
    target->setLink(makeNode());
    EXPECT_THROW(new ThrowingNode(target), std::runtime_error);
    EXPECT_EQ(Tracked::alive, 2);
}

// Bodies on the stack are not what groups are for, but leaving must be right for any body of the
// forest, root and inner ones included.
TEST_F(Group, AnyBodyCanLeave) {
    for (int leaving = 0; leaving < 3; ++leaving) {
        const NodePtr kept = makeNode();
        {
            Node chain[3];
            chain[leaving].setLink(kept);
            for (Node& node : chain) {
                kept->addLink(NodePtr(new Node));
                node.join(*kept);
            }
        }
        EXPECT_EQ(Tracked::alive, 4);
    }
}

class ReleasingNode : public Node {
public:
    explicit ReleasingNode(NodePtr other) : other_(std::move(other)) {}
    ~ReleasingNode() override {
        const NodePtr self(this);
        other_ = nullptr;
    }

private:
    NodePtr other_;
};

TEST_F(Group, ReleaseFromInsideADestructor) {
    NodePtr chain = makeNode();
    for (int i = 0; i < 1000000; ++i) {
        chain = NodePtr(new ReleasingNode(chain));
    }
    EXPECT_EQ(Tracked::alive, 1000001);
}

TEST_F(Group, LongChainsNeitherRecurseNorSlowDown) {
    NodePtr chain = makeNode();
    for (int i = 0; i < 1000000; ++i) {
        chain = NodePtr(new Node(chain));
    }
    EXPECT_EQ(Tracked::alive, 1000001);
}

TEST_F(Group, CountedPointersHoldTheGroup) {
    OrvCountedPtr<Node> counted(new Node);
    NodePtr cyclic(new Node(NodePtr(counted.get())));
    OrvCountedPtr<Node> again = OrvConverter<Node, Node>::toCounted(cyclic);
    cyclic = nullptr;
    counted = nullptr;
    EXPECT_EQ(Tracked::alive, 2);
    again = nullptr;
    EXPECT_EQ(Tracked::alive, 0);
}

// An interface that cannot be deleted through.
class Cached {
public:
    virtual int number() const = 0;

protected:
    ~Cached() = default;
};

class Binding : public Node, public Cached {
public:
    int number() const override { return 7; }
};

class Let : public Node {
public:
    explicit Let(OrvSimplePtr<Cached> binding) : binding_(*this, std::move(binding)) {}
    int number() const { return binding_->number(); }

private:
    OrvSimplePtr<Cached> binding_;
};

TEST_F(Group, LetOwnsItsBindingThoughNobodyReadsIt) {
    const OrvCyclicPtr<Let> let(new Let(OrvSimplePtr<Cached>(new Binding)));
    EXPECT_EQ(let->number(), 7);
    EXPECT_EQ(Tracked::alive, 2);
}

TEST_F(Group, BindingIsClaimedOnce) {
    const OrvCyclicPtr<Binding> binding(new Binding);
    const OrvCyclicPtr<Let> let(new Let(OrvSimplePtr<Cached>(binding.get())));
    EXPECT_TRUE(binding->isOwned());
    EXPECT_TRUE(binding->isJoinedWith(*let));
    try {
        (void)new Let(OrvSimplePtr<Cached>(binding.get()));
        ADD_FAILURE() << "no assertion";
    } catch (const OrvAssertion& assertion) {
        EXPECT_STREQ(assertion.what(), "The object already belongs to another owner.");
    }
    EXPECT_EQ(Tracked::alive, 2);
}

// What holds a group can be modelled with a plain list of edges: after any series of operations
// exactly the nodes connected with a held node are alive.
TEST_F(Group, RandomGraphsAgreeWithConnectedComponents) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 300; ++round) {
        const std::size_t count = 1 + random() % 24;
        std::vector<NodePtr> held;
        std::vector<std::size_t> component(count);
        for (std::size_t i = 0; i < count; ++i) {
            held.push_back(makeNode());
            component[i] = i;
        }
        for (std::size_t edge = random() % 30; edge > 0; --edge) {
            const std::size_t from = random() % count;
            const std::size_t to = random() % count;
            held[from]->addLink(held[to]);
            const std::size_t old = component[from];
            for (std::size_t& c : component) {
                c = c == old ? component[to] : c;
            }
        }
        std::vector<bool> isHeld(count, true);
        for (std::size_t drop = 0; drop < count; ++drop) {
            const std::size_t victim = random() % count;
            held[victim] = nullptr;
            isHeld[victim] = false;
            int expected = 0;
            for (std::size_t i = 0; i < count; ++i) {
                bool alive = false;
                for (std::size_t j = 0; j < count; ++j) {
                    alive = alive || (isHeld[j] && component[j] == component[i]);
                }
                expected += alive ? 1 : 0;
            }
            ASSERT_EQ(Tracked::alive, expected) << "round " << round;
        }
    }
}

}  // namespace
