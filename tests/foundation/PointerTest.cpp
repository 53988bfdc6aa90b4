// The pointer templates: ownership, conversions, failing dereferences, pinning.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "foundation/OrvConverter.h"
#include "foundation/OrvPinnedRegistry.h"
#include "foundation/Tracked.h"
#include "support/OrvException.h"

struct Incomplete;
OrvCountedPtr<Incomplete> makeIncomplete();

namespace {

struct Base {
    virtual ~Base() = default;
    Tracked tracked;
};
struct Left : Base {};
struct Right : Base {
    OrvCountedPtr<Base> next;
};
struct Kind {
    explicit Kind(int k) : kind(k) {}
    int kind;
};
struct OneKind : Kind {
    OneKind() : Kind(1) {}
    static bool classof(const Kind& other) { return other.kind == 1; }
};

class Pointers : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(Tracked::alive, 0); }
};

TEST_F(Pointers, LastCountedPointerDeletes) {
    OrvCountedPtr<Base> first(new Left);
    OrvCountedPtr<Base> second(first);
    first = nullptr;
    EXPECT_EQ(Tracked::alive, 1);
    const OrvCountedPtr<Base>& alias = second;
    second = alias;
    EXPECT_EQ(Tracked::alive, 1);
    OrvCountedPtr<Base> third(std::move(second));
    EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): a moved pointer is empty
    third = OrvCountedPtr<Right>(new Right);
    EXPECT_EQ(Tracked::alive, 1);
}

TEST_F(Pointers, ChainsEndWithoutRecursion) {
    OrvCountedPtr<Base> chain;
    for (int i = 0; i < 1000000; ++i) {
        OrvCountedPtr<Right> link(new Right);
        link->next = chain;
        chain = link;
    }
    EXPECT_EQ(Tracked::alive, 1000000);
}

TEST_F(Pointers, ConverterGoesFourWays) {
    const OrvCountedPtr<Base> base(new Left);
    EXPECT_TRUE((OrvConverter<Left, Base>::toCounted(base)));
    EXPECT_FALSE((OrvConverter<Right, Base>::toCounted(base)));
    EXPECT_FALSE((OrvConverter<Left, Base>::toCounted(OrvCountedPtr<Base>())));
    EXPECT_TRUE((OrvConverter<OneKind, Kind>::toCounted(OrvCountedPtr<Kind>(new OneKind))));
    EXPECT_FALSE((OrvConverter<OneKind, Kind>::toCounted(OrvCountedPtr<Kind>(new Kind(2)))));

    class Leaf : public Node {};
    const OrvCyclicPtr<Node> leaf(new Leaf);
    const OrvCyclicPtr<Node> node(new Node);
    EXPECT_TRUE((OrvConverter<Leaf, Node>::toCyclic(leaf)));
    EXPECT_FALSE((OrvConverter<Leaf, Node>::toCyclic(node)));
    EXPECT_FALSE((OrvConverter<Leaf, Node>::toCyclic(OrvCyclicPtr<Node>())));
    const OrvCountedPtr<Leaf> counted = OrvConverter<Leaf, Node>::toCounted(leaf);
    EXPECT_EQ(counted.get(), leaf.get());
    EXPECT_FALSE((OrvConverter<Leaf, Node>::toCounted(node)));
    EXPECT_EQ((OrvConverter<Node, Leaf>::toCyclic(counted)), leaf);
    EXPECT_FALSE((OrvConverter<Leaf, Node>::toCyclic(OrvCountedPtr<Node>(new Node))));
}

TEST_F(Pointers, ConvertedPointerSharesOwnership) {
    OrvCountedPtr<Base> base(new Left);
    const OrvCountedPtr<Left> left = OrvConverter<Left, Base>::toCounted(base);
    base = nullptr;
    EXPECT_EQ(Tracked::alive, 1);
}

TEST_F(Pointers, CountedPointerToAnIncompleteClass) {
    OrvCountedPtr<Incomplete> pointer = makeIncomplete();
    const OrvCountedPtr<Incomplete> copy(pointer);
    pointer = nullptr;
    EXPECT_EQ(Tracked::alive, 1);
}

TEST_F(Pointers, SimplePointerHasOneOwner) {
    OrvSimplePtr<Base> first(new Left);
    OrvSimplePtr<Base> second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved pointer is empty
    second = OrvSimplePtr<Base>(new Right);
    EXPECT_EQ(Tracked::alive, 1);
    OrvSimplePtr<Base>& alias = second;
    second = std::move(alias);
    EXPECT_EQ(Tracked::alive, 1);
    const Node holder;
    const OrvSimplePtr<Base> owned(holder, std::move(second));
    EXPECT_TRUE(owned);
    EXPECT_EQ(Tracked::alive, 2);
}

// An interface that cannot delete what is behind it.
struct Interface {
    virtual int answer() const = 0;

protected:
    ~Interface() = default;
};
struct PlainAnswer : Base, Interface {
    int answer() const override { return 1; }
};
struct BodyAnswer : Node, Interface {
    int answer() const override { return 2; }
};

TEST_F(Pointers, SimplePointerDeletesWhatItWasGiven) {
    OrvSimplePtr<Interface> plain(new PlainAnswer);
    OrvSimplePtr<Interface> unclaimed(new BodyAnswer);
    EXPECT_EQ(plain->answer() + unclaimed->answer(), 3);
    EXPECT_EQ(Tracked::alive, 2);
    plain = OrvSimplePtr<Interface>();
    unclaimed = OrvSimplePtr<Interface>();
    EXPECT_EQ(Tracked::alive, 0);
}

TEST_F(Pointers, EmptyPointersFailLoudly) {
    const Node holder;
    const OrvCyclicMember<Node> member(holder);
    const std::vector<std::pair<std::function<void()>, std::string>> cases = {
        {[] { (void)OrvCountedPtr<Node>()->getLink(); }, "Bad dereference"},
        {[] { (void)(*OrvCountedPtr<Node>()).getLink(); }, "Bad dereference"},
        {[] { (void)OrvSimplePtr<Node>()->getLink(); }, "Null dereference"},
        {[] { (void)(*OrvSimplePtr<Node>()).getLink(); }, "Null dereference"},
        {[] { (void)OrvCyclicPtr<Node>()->getLink(); },
         "Null dereference of OrvCyclicPtr<T>::operator->()"},
        {[] { (void)(*OrvCyclicPtr<Node>()).getLink(); },
         "Null dereference of OrvCyclicPtr<T>::operator*() const"},
        {[&] { (void)member->getLink(); }, "Null dereference of OrvCyclicPtr<T>::operator->()"},
        {[&] { (void)(*member).getLink(); },
         "Null dereference of OrvCyclicPtr<T>::operator*() const"},
    };
    for (const auto& [dereference, text] : cases) {
        try {
            dereference();
            ADD_FAILURE() << "no exception: " << text;
        } catch (const OrvException& exception) {
            EXPECT_EQ(exception.what(), text);
        }
    }
}

TEST_F(Pointers, PinnedObjectsAreSharedByThreadsAndEndWithTheRegistry) {
    {
        OrvPinnedRegistry registry;
        OrvCountedPtr<Right> shared(new Right);
        shared->next = OrvCountedPtr<Base>(new Left);
        registry.pin(shared->next);
        registry.pin(shared);
        registry.pin(shared);
        registry.pin(OrvCountedPtr<Base>());
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&shared] {
                for (int n = 0; n < 1000; ++n) {
                    const OrvCountedPtr<Base> copy(shared);
                    const OrvCountedPtr<Base> next(shared->next);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        shared = nullptr;
        EXPECT_EQ(Tracked::alive, 2);
    }
    EXPECT_EQ(Tracked::alive, 0);
}

}  // namespace

struct Incomplete {
    Tracked tracked;
};

OrvCountedPtr<Incomplete> makeIncomplete() { return OrvCountedPtr<Incomplete>(new Incomplete); }
