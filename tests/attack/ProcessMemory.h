// How much memory this process takes.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <fstream>

/// The resident memory in KiB, as /proc/self/statm of Linux gives it (man 5 proc).
inline std::size_t residentKilobytes() {
    std::ifstream statistics("/proc/self/statm");
    std::size_t pages = 0;
    statistics >> pages >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}
