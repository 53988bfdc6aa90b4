#include "repl/Interrupt.h"

namespace mmq {

namespace {

// What a signal handler sets can stand nowhere else.
std::atomic<bool>& interrupted() {
    static constinit std::atomic<bool> flag{false};
    return flag;
}

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void setInterrupted(int /*signal*/) { interrupted() = true; }

}  // namespace

// Calls that wait for input are to end: they are not begun anew.
Interrupt::Interrupt() {
    struct sigaction action {};
    action.sa_handler = &setInterrupted;
    sigaction(SIGINT, &action, &before_);
}

Interrupt::~Interrupt() { sigaction(SIGINT, &before_, nullptr); }

const std::atomic<bool>& Interrupt::flag() { return interrupted(); }

void Interrupt::clear() { interrupted() = false; }

}  // namespace mmq
