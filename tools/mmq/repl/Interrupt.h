// Ctrl-C, as something that can be asked for.
#pragma once

#include <signal.h>

#include <atomic>

namespace mmq {

/// While it lives, the signal of Ctrl-C ends no process but sets a flag. One at a time.
class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    /// The flag, which evaluations can be given.
    static const std::atomic<bool>& flag();
    static void clear();

private:
    struct sigaction before_ {};
};

}  // namespace mmq
