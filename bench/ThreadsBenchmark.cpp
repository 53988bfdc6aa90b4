// What several threads bring to a program that judges many objects.
//
//   threads_benchmark DIRECTORY [benchmark options]
//
// "threads/COMMAND/idle" judges each operation of 20,000 classes by a condition that says nothing,
// "one" and "two" by one that takes a second for all, on so many threads. DIRECTORY takes
// the documents.
#include <benchmark/benchmark.h>

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "ChildProcess.h"
#include "ProgramBenchmark.h"
#include "SyntheticDocuments.h"

namespace {

constexpr const char* quick = "true";
constexpr const char* slow = R"(size (filter {$name ~= "Type.*77$"} over all "DataType") = 2)";

std::string writeRule(const std::string& path, const std::string& condition) {
    std::ofstream(path) << "rules:\n  - id: measured\n    severity: error\n    for: [Operation]\n"
                        << "    require: '" << condition << "'\n    message: Measured.\n"
                        << "    reason: Measured.\n";
    return path;
}

void addLint(const std::string& model, const std::string& directory) {
    const std::string quickRule = writeRule(directory + "/quick.yaml", quick);
    const std::string slowRule = writeRule(directory + "/slow.yaml", slow);
    const std::vector<std::string> lint = {MMQ, "lint", "--model", model, "--jobs"};
    const auto add = [&](const std::string& name, const char* jobs, const std::string& rule) {
        std::vector<std::string> command = lint;
        command.insert(command.end(), {jobs, rule});
        addProgram("threads/lint/" + name, command);
    };
    add("idle", "1", quickRule);
    add("one", "1", slowRule);
    add("two", "2", slowRule);
}

void addEval(const std::string& model) {
    const auto add = [&](const std::string& name, const char* jobs, const char* expression) {
        addProgram("threads/eval/" + name, {MMQ, "eval", "--model", model, "--on", "Operation",
                                            "--jobs", jobs, "--format", "json", expression});
    };
    add("idle", "1", quick);
    add("one", "1", slow);
    add("two", "2", slow);
}

}  // namespace

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        throw std::runtime_error("threads_benchmark DIRECTORY [benchmark options]");
    }
    const std::string directory = argv[1];
    const std::string model = directory + "/large.uml";
    std::ofstream(model, std::ios::binary) << synthetic::xmiDocument(synthetic::Model(20000));
    addEval(model);
    addLint(model, directory);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 1;
}
