// The queries in a scripting language, over tables.
#include <fstream>
#include <sstream>

#include "QueryEngine.h"
#include "ScriptEngine.h"
#include "SyntheticDocuments.h"

namespace {

std::string readFile(const char* path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Fills the tables of one state.
class ScriptQueryEngine final : public QueryEngine {
public:
    ScriptQueryEngine(const synthetic::Model& model, const char* modulePath)
        : engine_(openScriptEngine(modulePath)) {
        engine_->run(readFile(BENCH_DIR "/queries.lua"));
        for (const synthetic::Package& package : model.packages()) {
            engine_->run(synthetic::luaChunk(package));
        }
        engine_->run("resolve()");
        engine_->collectGarbage();
    }

    PreparedQuery prepare(const std::string& query) override {
        const std::string function = "queries." + query;
        const int run = engine_->keep(function);
        const int answer = engine_->keep("function() return answer(" + function + ") end");
        return {[this, run] { return engine_->call(run); },
                [this, answer] { return engine_->callForText(answer); }};
    }

    std::function<bool(std::size_t)> condition() override {
        std::vector<int> operations;
        for (std::size_t i = 1; i <= conditionOperands; ++i) {
            operations.push_back(engine_->keep("operations[" + std::to_string(i) + "]"));
        }
        const int condition = engine_->keep("condition");
        return [this, condition, operations](std::size_t number) {
            return engine_->test(condition, operations[number]);
        };
    }

private:
    std::unique_ptr<ScriptEngine> engine_;
};

}  // namespace

std::unique_ptr<QueryEngine> makeScriptQueryEngine(const synthetic::Model& model,
                                                   const char* modulePath) {
    return std::make_unique<ScriptQueryEngine>(model, modulePath);
}
