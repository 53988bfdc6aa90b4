#include "ProgramBenchmark.h"

#include <benchmark/benchmark.h>

#include "ChildProcess.h"

void addProgram(const std::string& name, const std::vector<std::string>& command) {
    runCommand(command);
    benchmark::RegisterBenchmark(name.c_str(),
                                 [command](benchmark::State& state) {
                                     RunTime time;
                                     for (auto _ : state) {
                                         time = runCommand(command);
                                         state.SetIterationTime(time.elapsed.count());
                                     }
                                     state.counters["processor"] = time.processor.count();
                                 })
        ->UseManualTime()
        ->Iterations(1);
}
