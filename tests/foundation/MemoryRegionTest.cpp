// What a compilation makes lies together, and all of it is given back.
#include "foundation/OrvMemoryRegion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "api/ExprParser.h"
#include "api/RecordingDialogs.h"
#include "foundation/OrvCyclicPtr.h"
#include "foundation/OrvMemoryPool.h"
#include "foundation/OrvRegionText.h"
#include "foundation/SegmentedArray.h"
#include "support/AllocationCounter.h"
#include "support/Corpus.h"
#include "support/SilentErrors.h"

namespace {

using AttributePtr = OrvCountedPtr<MMValueAbsExpr>;

AttributePtr compileAttribute(const std::string& text) {
    RecordingDialogs dialogs;
    return ExprParser::parseAssociatedAttribute(dialogs, text);
}

constexpr std::size_t kept = std::size_t{1} << 20;

/// Runs an action on a thread of its own, while the pool keeps pieces as it does for hosts, and
/// says how many allocations are left when the thread has ended; a first run makes what the
/// process keeps.
std::ptrdiff_t leftBy(const std::function<void()>& action) {
    std::ptrdiff_t before = 0;
    for (int run = 0; run < 2; ++run) {
        before = AllocationCounter::live();
        OrvMemoryPool::setLimit(kept);
        std::thread(action).join();
        OrvMemoryPool::setLimit(0);
    }
    return AllocationCounter::live() - before;
}

/// With what stands in front of it, of a size that leaves no gap.
struct Body : OrvCyclicPtrBody {
    std::array<std::uint64_t, 2> content{};
};
static_assert((sizeof(Body) + sizeof(void*)) % __STDCPP_DEFAULT_NEW_ALIGNMENT__ == 0);

/// A body of a host's own, with a member that operator new must align.
struct AlignedBody : OrvCyclicPtrBody {
    alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) std::array<double, 2> content{};
};

TEST(MemoryRegion, BodiesOfACompilationLieOneBehindTheOther) {
    constexpr std::size_t bodies = 10000;  // of several chunks
    std::size_t neighbours = 0;
    EXPECT_EQ(leftBy([&neighbours] {
                  neighbours = 0;
                  std::vector<OrvCyclicPtr<Body>> held;
                  const OrvCompilationMemory memory;
                  for (std::size_t i = 0; i < bodies; ++i) {
                      held.emplace_back(new Body);
                      const char* const end = reinterpret_cast<const char*>(held.back().get());
                      const bool isNext =
                          i > 0 && end - reinterpret_cast<const char*>(held[i - 1].get()) ==
                                       sizeof(Body) + sizeof(void*);
                      neighbours += isNext ? 1 : 0;
                  }
              }),
              0);
    EXPECT_GT(neighbours, bodies - bodies / 100);
}

// Makes bodies of both kinds in turn; returns how many of the aligned ones are not where they
// should.
std::size_t misplacedAmong(std::size_t bodies) {
    std::vector<OrvCyclicPtr<OrvCyclicPtrBody>> held;
    std::size_t misplaced = 0;
    for (std::size_t i = 0; i < bodies; ++i) {
        auto* const aligned = new AlignedBody;
        held.emplace_back(aligned);
        held.emplace_back(new Body);
        const auto place = reinterpret_cast<std::uintptr_t>(aligned);
        misplaced += place % alignof(AlignedBody) != 0 ? 1 : 0;
    }
    return misplaced;
}

TEST(MemoryRegion, BodiesAreAlignedAsOperatorNewAligns) {
    constexpr std::size_t bodies = 2000;  // of several chunks
    EXPECT_EQ(leftBy([] {
                  EXPECT_EQ(misplacedAmong(bodies), 0U) << "outside a compilation";
                  const OrvCompilationMemory memory;
                  EXPECT_EQ(misplacedAmong(bodies), 0U) << "in a compilation";
              }),
              0);
    EXPECT_EQ(misplacedAmong(bodies), 0U) << "where nothing is kept";
}

TEST(MemoryRegion, CompilationsGiveBackWhatTheyTook) {
    const SilentErrors silent;
    const auto compileCorpus = [] {
        for (const CorpusText& row : corpus()) {
            (void)compileAttribute(row.text);
        }
    };
    EXPECT_EQ(leftBy(compileCorpus), 0);
}

// The tree of a text that compiles goes with its region, whatever it consists of: names and texts
// of any length, long tuples, many keys, labels, steps with several parents.
TEST(MemoryRegion, TreesLeaveNothing) {
    const std::string name = "aNameThatIsLongerThanMost";
    const std::vector<std::string> texts = {
        "$" + name + " = \"a text that is longer than most\"",
        "for_all " + name + " in [" + name + "] => $" + name + " of " + name + " ~= \"a.*\"",
        "let " + name + " = replace_all (`a long pattern|another`, $" + name + ", \"" + name +
            "\") in " + name + " + " + name,
        "sort {$" + name + "} & sortd {$a} & sort {$b} & sort {$c} over [" + name + "]",
        "this -> (" + name + ": [" + name + "]{$a = \"b\"}; b: [b]; c: [c]; d: [d]; e: [e]) -> [" +
            name + "] -> (@" + name + "; @e; [f])"};
    std::size_t compiled = 0;
    const auto compileAll = [&] {
        compiled = 0;
        for (const std::string& text : texts) {
            RecordingDialogs dialogs;
            compiled += ExprParser::parseCondition(dialogs, text) ? 1 : 0;
            compiled += ExprParser::parseAssociatedAttribute(dialogs, text) ? 1 : 0;
            compiled += ExprParser::parseComplexAssociation(dialogs, text) ? 1 : 0;
        }
    };
    EXPECT_EQ(leftBy(compileAll), 0);
    EXPECT_EQ(compiled, 7U);
}

/// Says that it owns nothing, and tells how many of its kind were destroyed.
class Idle final : public OrvCyclicPtrBody {
public:
    Idle() : OrvCyclicPtrBody(Ownership::nothing), link_(*this) {}
    ~Idle() override { ++destroyed; }

    void own() { becomeOwner(); }
    void setLink(const OrvCyclicPtr<Idle>& target) { link_ = target; }

    static inline int destroyed = 0;

private:
    OrvCyclicMember<Idle> link_;
};

// Makes a group of two pairs; the bodies whose bits are set in `owners` become owners, before the
// pairs are joined or behind that. Returns how many bodies were destroyed.
int destroyedOf(unsigned owners, bool isBefore) {
    std::array<OrvCyclicPtr<Idle>, 4> bodies;
    const auto own = [&] {
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            if ((owners >> i & 1U) != 0) {
                bodies[i]->own();
            }
        }
    };
    for (OrvCyclicPtr<Idle>& body : bodies) {
        body = OrvCyclicPtr<Idle>(new Idle);
    }
    bodies[0]->setLink(bodies[1]);
    bodies[3]->setLink(bodies[2]);
    if (isBefore) {
        own();
    }
    bodies[1]->setLink(bodies[3]);
    if (!isBefore) {
        own();
    }
    Idle::destroyed = 0;
    bodies.fill(nullptr);
    return Idle::destroyed;
}

TEST(MemoryRegion, BodiesThatOwnNothingAreNotDestroyed) {
    const auto tryAll = [](const std::string& where) {
        for (unsigned owners = 0; owners < 16; ++owners) {
            for (const bool isBefore : {false, true}) {
                EXPECT_EQ(destroyedOf(owners, isBefore), std::popcount(owners))
                    << where << ' ' << owners << ' ' << isBefore;
            }
        }
    };
    EXPECT_EQ(leftBy([&] {
                  tryAll("outside a compilation");
                  const OrvCompilationMemory memory;
                  tryAll("in a compilation");
              }),
              0);
}

/// What becomes of a settled group, and what else there is in its region.
struct SettledCase {
    bool isInRegion, hasNeighbour, isJoined, isJoinedInRegion, owns;
};

// Ends a group of two that was settled, and tells how many bodies were destroyed.
int destroyedOf(const SettledCase& settled) {
    OrvCyclicPtr<Idle> other;
    {
        const OrvCompilationMemory memory;
        other = OrvCyclicPtr<Idle>(new Idle);
    }
    if (!settled.isJoinedInRegion) {
        other = OrvCyclicPtr<Idle>(new Idle);
    }
    OrvCyclicPtr<Idle> first;
    OrvCyclicPtr<Idle> neighbour;
    {
        std::optional<OrvCompilationMemory> memory;
        if (settled.isInRegion) {
            memory.emplace();
        }
        first = OrvCyclicPtr<Idle>(new Idle);
        first->setLink(OrvCyclicPtr<Idle>(new Idle));
        neighbour = OrvCyclicPtr<Idle>(settled.hasNeighbour ? new Idle : nullptr);
        first->settle();
    }
    if (settled.isJoined) {
        other->setLink(first);
    }
    if (settled.owns) {
        first->own();
    }
    Idle::destroyed = 0;
    first = nullptr;
    other = nullptr;
    return Idle::destroyed;
}

TEST(MemoryRegion, SettledGroupsEndLikeOthers) {
    EXPECT_EQ(leftBy([] {
                  for (unsigned bits = 0; bits < 32; ++bits) {
                      const SettledCase settled = {(bits & 1U) != 0, (bits & 2U) != 0,
                                                   (bits & 4U) != 0, (bits & 8U) != 0,
                                                   (bits & 16U) != 0};
                      EXPECT_EQ(destroyedOf(settled), settled.owns ? 1 : 0) << bits;
                  }
              }),
              0);
}

/// A counted object that tells how many of its kind there are.
struct Counted : OrvCountedObject {
    Counted() { ++alive; }
    ~Counted() override { --alive; }

    static inline int alive = 0;
};

// Some stand before and some behind pieces that are larger than what the pool keeps; each finds the
// region in which it stands, or the pool.
TEST(MemoryRegion, CountedObjectsOutliveTheCompilation) {
    EXPECT_EQ(leftBy([] {
                  std::vector<OrvCountedPtr<Counted>> held;
                  {
                      const OrvCompilationMemory memory;
                      OrvMemoryRegion* const region = OrvCompilationMemory::nodes();
                      for (int i = 0; i < 10000; ++i) {
                          held.emplace_back(new (region) Counted);
                          held.emplace_back(new Counted);
                          if (i % 1000 == 0) {
                              region->allocateBytes(OrvMemoryPool::largestChunk + 1);
                          }
                      }
                  }
                  EXPECT_EQ(Counted::alive, 20000);
                  std::reverse(held.begin(), held.begin() + 10000);
                  held.clear();
                  EXPECT_EQ(Counted::alive, 0);
              }),
              0);
}

// Of every length around those at which copying changes.
TEST(MemoryRegion, TextsAreCopied) {
    const std::string source = "0123456789 abcdefghijklmnopqrstuvwxyz";
    EXPECT_EQ(leftBy([&source] {
                  const OrvCompilationMemory memory;
                  OrvMemoryRegion* const none = nullptr;
                  for (auto* const region : {OrvCompilationMemory::nodes(), none}) {
                      std::vector<OrvRegionText> texts;
                      for (std::size_t size = 0; size <= source.size(); ++size) {
                          texts.emplace_back(region, source.substr(0, size));
                      }
                      texts.front() = std::move(texts.back());
                      EXPECT_EQ(texts.front().view(), source);
                      for (std::size_t size = 1; size < source.size(); ++size) {
                          EXPECT_EQ(texts[size].view(), source.substr(0, size));
                          EXPECT_EQ(texts[size].view().data()[size], '\0');
                      }
                  }
              }),
              0);
    EXPECT_EQ(OrvRegionText::constant(source).view().data(), source.data());
}

// Of several segments.
TEST(SegmentedArray, ValuesStayWhereTheyAre) {
    EXPECT_EQ(leftBy([] {
                  const std::size_t count = 30000;
                  SegmentedArray<std::uint64_t, 3> array;
                  std::vector<const std::uint64_t*> places;
                  for (std::size_t i = 0; i < count; ++i) {
                      array.append(i * i);
                      places.push_back(&array[i]);
                  }
                  ASSERT_EQ(array.size(), count);
                  std::size_t i = 0;
                  for (const std::uint64_t& value : array) {
                      EXPECT_EQ(value, i * i);
                      EXPECT_EQ(&value, places[i]);
                      ++i;
                  }
                  EXPECT_EQ(i, count);
              }),
              0);
}

// The compiled expression is dropped by another thread than the one that made it.
TEST(MemoryRegion, BodiesEndOnAnotherThread) {
    EXPECT_EQ(leftBy([] {
                  AttributePtr compiled = compileAttribute("$name = \"x\" and $type = \"y\"");
                  std::thread([moved = std::move(compiled)]() mutable {
                      EXPECT_TRUE(moved);
                      moved = nullptr;
                  }).join();
              }),
              0);
}

/// Compiles a text of its own whenever it is told something.
class CompilingDialogs : public RecordingDialogs {
public:
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*modal*/) override {
        compiled.push_back(compileAttribute("$type = \"inner\""));
    }

    std::vector<AttributePtr> compiled;
};

TEST(MemoryRegion, CompilationInsideACompilationHasItsOwn) {
    EXPECT_EQ(leftBy([] {
                  CompilingDialogs dialogs;
                  AttributePtr outer =
                      ExprParser::parseAssociatedAttribute(dialogs, "$name = \"outer\"");
                  EXPECT_TRUE(outer);
                  ASSERT_EQ(dialogs.compiled.size(), 2U);
                  dialogs.compiled.pop_back();
                  outer = nullptr;
                  EXPECT_TRUE(dialogs.compiled.front());
              }),
              0);
}

// Compiles with an allocation that fails after so many; returns whether one did.
bool compileWithFailure(const std::string& text, long number) {
    OrvMemoryPool::setLimit(0);  // gives back what is kept
    OrvMemoryPool::setLimit(kept);
    const FailingAllocation failing(number, number % 2 == 0);
    try {
        const AttributePtr compiled = compileAttribute(text);
        EXPECT_TRUE(compiled || failing.hasFailed());
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(failing.hasFailed());  // of the abstraction
    }
    return failing.hasFailed();
}

// Chunks fail like any allocation: the compilation ends empty, and nothing is left.
TEST(MemoryRegion, EveryChunkMayFail) {
    std::string text = "$name = \"x\"";
    constexpr int comparisons = 50;  // of several chunks
    for (int i = 0; i < comparisons; ++i) {
        text += " or $name = \"y\"";
    }
    EXPECT_EQ(leftBy([&text] {
                  long number = 0;
                  while (compileWithFailure(text, number)) {
                      ++number;
                  }
                  EXPECT_GT(number, 4);
              }),
              0);
}

}  // namespace
