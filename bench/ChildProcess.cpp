#include "ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

extern char** environ;

namespace {

// A line of /proc/self/status, which is in KiB.
std::size_t readStatus(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(key + ":")) {
            return std::stoul(line.substr(key.size() + 1)) * 1024;
        }
    }
    throw std::runtime_error("There is no " + key);
}

[[noreturn]] void measureAndExit(const std::function<void()>& work, int output) {
    try {
        const std::size_t before = readStatus("VmRSS");
        work();
        const MemoryUse use{readStatus("VmHWM") - before, readStatus("VmRSS") - before};
        _exit(write(output, &use, sizeof use) == sizeof use ? 0 : 1);
    } catch (const std::exception&) {
        _exit(1);
    }
}

std::chrono::duration<double> seconds(const timeval& time) {
    return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

}  // namespace

MemoryUse measureMemory(const std::function<void()>& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("There is no pipe.");
    }
    const pid_t child = fork();
    if (child == 0) {
        measureAndExit(work, ends[1]);
    }
    close(ends[1]);
    MemoryUse use;
    const bool isRead = read(ends[0], &use, sizeof use) == sizeof use;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!isRead) {
        throw std::runtime_error("A child process failed.");
    }
    return use;
}

RunTime runCommand(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    if (failure != 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
        throw std::runtime_error("This does not run: " + command.front());
    }
    const auto end = std::chrono::steady_clock::now();
    return {end - start, seconds(usage.ru_utime) + seconds(usage.ru_stime)};
}
