// What the tests do with documents while memory fails.
#pragma once

#include <functional>
#include <string>
#include <vector>

/// One use of the library: made ready with all the memory there is, on a model of its own where it
/// needs one, and then run.
struct MemoryUse {
    using Run = std::function<std::string()>;

    const char* name;
    std::function<Run()> prepare;
};

/// Reading models and a metamodel, from texts and files, and what models make at the first need:
/// inverses, the index of paths, texts of lists.
std::vector<MemoryUse> memoryUses();
