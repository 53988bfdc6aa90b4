// Does ten compilations and ten evaluations whose cost is counted, and not timed.
//
//   cost_probe
//
// Prints a line each: its name, the allocations of one round when the ones before have filled the
// pool, and those of a round without the pool. Under callgrind the instructions of that first round
// are those of the function measuredRound. Nothing depends on anything but the program.
#include <cstdlib>
#include <functional>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "ExpressionShapes.h"
#include "ProductQueries.h"
#include "SilentDialogs.h"
#include "SyntheticDocuments.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationContext.h"
#include "foundation/OrvMemoryPool.h"
#include "repository/ModelReader.h"

namespace {

std::size_t allocations = 0;

void* allocate(std::size_t size, std::size_t alignment) {
    ++allocations;
    void* const memory =
        std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

using Action = std::function<void()>;

}  // namespace

void* operator new(std::size_t size) { return allocate(size, __STDCPP_DEFAULT_NEW_ALIGNMENT__); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

// Found by its name.
extern "C" __attribute__((noinline)) void measuredRound(const Action& action) { action(); }

namespace {

std::size_t countRound(const Action& action) {
    action();
    const std::size_t before = allocations;
    measuredRound(action);
    return allocations - before;
}

std::size_t countWithoutPool(const Action& action) {
    OrvMemoryPool::setLimit(0);
    const std::size_t before = allocations;
    action();
    const std::size_t count = allocations - before;
    OrvMemoryPool::setLimit(OrvMemoryPool::defaultLimit);
    action();
    return count;
}

void probe(const std::string& name, const Action& action) {
    const std::size_t withPool = countRound(action);
    std::cout << name << ' ' << withPool << ' ' << countWithoutPool(action) << '\n';
}

template <class Compiled>
Compiled checked(Compiled compiled, const std::string& text) {
    if (!compiled) {
        throw std::runtime_error("This does not compile: " + text);
    }
    return compiled;
}

void probeCompilation(const std::string& name, const std::string& text) {
    probe("compile-" + name, [text] {
        SilentDialogs dialogs;
        checked(ExprParser::parseAssociatedAttribute(dialogs, text), text);
    });
}

void probeCompilations() {
    probeCompilation("attribute", "$name");
    for (const ExpressionShape& shape : expressionShapes()) {
        probeCompilation(shape.name, shape.expression);
    }
    probeCompilation("signature", productQuery("signature"));
    probeCompilation("let",
                     R"(let n = size [ownedOperation] in if n > 2 then string n else $name)");
    for (const std::string name : {"closure", "path"}) {
        probe("compile-" + name, [text = productQuery(name)] {
            SilentDialogs dialogs;
            checked(ExprParser::parseComplexAssociation(dialogs, text), text);
        });
    }
}

/// Evaluates on one model.
class QueryProbe {
public:
    QueryProbe()
        : model_(readModelText(synthetic::xmiDocument(synthetic::Model(20)), "synthetic")),
          context_(*model_) {}

    void probeQueries() {
        for (const std::string name : {"count", "prefix", "every"}) {
            probeValue(name, productQuery(name), {model_->root(0)});
        }
        for (const std::string name : {"pattern", "sorted", "closure", "path"}) {
            probeObjects(name);
        }
        const MMObjectRange range = model_->instances("Operation");
        const std::vector<MMObject> operations(range.begin(), range.end());
        probeValue("signature", productQuery("signature"), operations);
        probeValue("condition", productCondition, operations);
        probeValue("let", R"(let n = size [ownedParameter] in if n > 2 then string n else $name)",
                   operations);
    }

private:
    void probeValue(const std::string& name, const std::string& text,
                    const std::vector<MMObject>& objects) {
        const auto compiled = checked(ExprParser::parseAssociatedAttribute(dialogs_, text), text);
        probe("evaluate-" + name, [&] {
            for (const MMObject object : objects) {
                compiled->apply(context_, object);
            }
        });
    }

    void probeObjects(const std::string& name) {
        const std::string& text = productQuery(name);
        const auto compiled = checked(ExprParser::parseComplexAssociation(dialogs_, text), text);
        probe("evaluate-" + name, [&] { compiled->apply(context_, model_->root(0)); });
    }

    SilentDialogs dialogs_;
    std::unique_ptr<RepositoryModel> model_;
    MMEvaluationContext context_;
};

}  // namespace

int main() try {
    probeCompilations();
    QueryProbe().probeQueries();
    return 0;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
}
