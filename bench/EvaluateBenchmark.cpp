// Evaluation beside the same questions asked in other ways, of one model.
//
//   evaluate_benchmark DIRECTORY [scale] [benchmark options]
//
// "queries/QUERY/ENGINE" evaluates a query on the model of 20,000 classes, and
// "condition/call/ENGINE" calls one condition for one object. With "scale" there are two engines
// alone, ours and the loops over structs, and "small/QUERY/ENGINE" evaluates on a model of 1,000.
// Before anything is measured all engines must have given the same answers. DIRECTORY takes the
// document that a peer reads.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "QueryEngine.h"

namespace {

using Engines = std::map<std::string, std::unique_ptr<QueryEngine>>;

const std::vector<std::string> engineNames = {"ours", "structs", "pugixml", "luajit", "lua", "jq"};

void addQuery(const std::string& name, const PreparedQuery& query) {
    auto* const added =
        benchmark::RegisterBenchmark(name.c_str(), [query](benchmark::State& state) {
            std::size_t size = 0;
            for (auto _ : state) {
                const auto before =
                    query.processorTime ? query.processorTime() : std::chrono::nanoseconds(0);
                size = query.run();
                if (query.processorTime) {
                    state.SetIterationTime(
                        std::chrono::duration<double>(query.processorTime() - before).count());
                }
            }
            state.counters["size"] = static_cast<double>(size);
        });
    if (query.processorTime) {
        added->UseManualTime()->Iterations(1);
    }
}

// The closure comes in any order.
std::string inOrder(const std::string& query, const std::string& answer) {
    if (query != "closure") {
        return answer;
    }
    std::istringstream text(answer);
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line + "\n");
    }
    std::sort(lines.begin(), lines.end());
    return std::accumulate(lines.begin(), lines.end(), std::string());
}

void compare(const std::string& what, const std::string& answer, const std::string& expected) {
    if (answer != expected) {
        const auto [at, other] =
            std::mismatch(answer.begin(), answer.end(), expected.begin(), expected.end());
        throw std::runtime_error("Wrong answer to " + what + ", at character " +
                                 std::to_string(at - answer.begin()) + ": " +
                                 std::string(at, answer.end()).substr(0, 80) + " for " +
                                 std::string(other, expected.end()).substr(0, 80));
    }
}

// The queries of all engines that can say them, compared with the loops over structs.
void addQueries(const std::string& group, const Engines& engines) {
    for (const std::string& query : queryNames()) {
        const std::string expected = inOrder(query, engines.at("structs")->prepare(query).answer());
        for (const std::string& name : engineNames) {
            const auto engine = engines.find(name);
            const PreparedQuery prepared =
                engine != engines.end() ? engine->second->prepare(query) : PreparedQuery{};
            if (prepared.run) {
                const std::string caption = group + "/" + query + "/" + name;
                compare(caption, inOrder(query, prepared.answer()), expected);
                addQuery(caption, prepared);
            }
        }
    }
}

void addConditions(const Engines& engines) {
    const auto expected = engines.at("structs")->condition();
    for (const std::string& name : engineNames) {
        const auto condition = engines.at(name)->condition();
        if (!condition) {
            continue;
        }
        for (std::size_t i = 0; i < QueryEngine::conditionOperands; ++i) {
            if (condition(i) != expected(i)) {
                throw std::runtime_error(name + " gives another answer to the condition.");
            }
        }
        benchmark::RegisterBenchmark(
            ("condition/call/" + name).c_str(), [condition](benchmark::State& state) {
                std::size_t number = 0;
                for (auto _ : state) {
                    benchmark::DoNotOptimize(condition(number));
                    number = number + 1 < QueryEngine::conditionOperands ? number + 1 : 0;
                }
            });
    }
}

// What growth is measured with: no other engine's memory is in the same heap.
Engines makeTwoEngines(const synthetic::Model& model) {
    Engines engines;
    engines["ours"] = makeProductEngine(model);
    engines["structs"] = makeStructEngine(model);
    return engines;
}

Engines makeEngines(const synthetic::Model& model, const std::string& directory) {
    Engines engines = makeTwoEngines(model);
    engines["pugixml"] = makePugixmlEngine(model);
    engines["luajit"] = makeScriptQueryEngine(model, LUAJIT_ENGINE);
    engines["lua"] = makeScriptQueryEngine(model, LUA_ENGINE);
    engines["jq"] = makeJqEngine(model, directory + "/model.json");
    return engines;
}

}  // namespace

const std::vector<std::string>& queryNames() {
    static const std::vector<std::string> names = {"count",     "pattern", "prefix",  "every",
                                                   "signature", "sorted",  "closure", "path"};
    return names;
}

int main(int argc, char** argv) try {
    // Otherwise whoever frees the end of the heap gives it back to the system, and takes it again.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    benchmark::Initialize(&argc, argv);
    const bool isScale = argc == 3 && std::string_view(argv[2]) == "scale";
    if (argc != 2 && !isScale) {
        throw std::runtime_error("evaluate_benchmark DIRECTORY [scale] [benchmark options]");
    }
    const synthetic::Model large(20000);
    const synthetic::Model small(1000);
    const Engines engines = isScale ? makeTwoEngines(large) : makeEngines(large, argv[1]);
    const Engines smallEngines = isScale ? makeTwoEngines(small) : Engines();
    addQueries("queries", engines);
    if (isScale) {
        addQueries("small", smallEngines);
    } else {
        addConditions(engines);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
}
