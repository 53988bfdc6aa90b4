// Silence on the standard error stream, for tests.
#pragma once

#include <iostream>

/// Loses what is written to the standard error stream, where dropped characters are reported.
class SilentErrors {
public:
    SilentErrors() : buffer_(std::cerr.rdbuf(nullptr)) {}
    SilentErrors(const SilentErrors&) = delete;
    SilentErrors& operator=(const SilentErrors&) = delete;
    ~SilentErrors() { std::cerr.rdbuf(buffer_); }

private:
    std::streambuf* buffer_;
};
