// Programs as a user runs them, from their start to their end.
#pragma once

#include <string>
#include <vector>

/// Registers a benchmark that runs a command by the clock; its counter `processor` is the time that
/// it took on all processors, in seconds. Runs the command once before, and throws
/// std::runtime_error where that fails.
void addProgram(const std::string& name, const std::vector<std::string>& command);
