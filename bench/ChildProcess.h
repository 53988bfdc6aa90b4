// Work that is done in a process of its own, so that its memory and time are its own.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// What a process had in memory, at most and at its end, beyond what it began with.
struct MemoryUse {
    std::size_t peak = 0;
    std::size_t atEnd = 0;
};

/// Forks, does the work in the child, and gives what the child needed for it. Its memory at the end
/// is what `work` leaves behind. To be called while this process is small and has one thread.
/// Throws std::runtime_error where the child fails.
MemoryUse measureMemory(const std::function<void()>& work);

/// How long a command took from its start to its end, by the clock and on processors.
struct RunTime {
    std::chrono::duration<double> elapsed{};
    std::chrono::duration<double> processor{};
};

/// Runs a command, whose output is dropped. Throws std::runtime_error where it fails.
RunTime runCommand(const std::vector<std::string>& command);
