#include "Pager.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <thread>

namespace mmq {

namespace {

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

std::string pagerCommand() {
    for (const char* const name : {"MMQ_PAGER", "PAGER"}) {
        if (std::getenv(name) != nullptr) {
            return std::string(environment(name));
        }
    }
    // Where there is no less, the output goes on as it is.
    return "command -v less >/dev/null && exec less || exec cat";
}

[[noreturn]] void becomePager(int input) {
    dup2(input, STDIN_FILENO);
    close(input);
    setenv("LESS", "FRX", 0);
    // A pager that is not there has read nothing.
    const std::string command = pagerCommand() + "\n[ $? -ne 127 ] || exec cat";
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    _exit(127);
}

// An interrupt ends this program, but not before its pager: the shell would have the terminal back
// while the pager still reads from it. A thread waits for the signal, which no other one takes.
void endWithPager(pid_t pager) {
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_BLOCK, &interrupt, nullptr);
    std::thread([interrupt, pager] {
        int signal = 0;
        sigwait(&interrupt, &signal);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        waitpid(pager, nullptr, 0);
        constexpr int interruptedStatus = 130;
        _exit(interruptedStatus);
    }).detach();
}

}  // namespace

bool Pager::isWanted() {
    const std::string_view terminal = environment("TERM");
    const std::string command = pagerCommand();
    return isatty(STDOUT_FILENO) != 0 && !terminal.empty() && terminal != "dumb" &&
           !command.empty() && command != "cat";
}

Pager::Pager(std::ostream& stream) : stream_(stream), output_(*stream.rdbuf(this)) {}

// The pager must see the end of its input on every descriptor before it is waited for.
Pager::~Pager() {
    stream_.flush();
    stream_.rdbuf(&output_);
    if (process_ > 0) {
        std::cerr.flush();
        close(STDOUT_FILENO);
        if (takesMessages_) {
            close(STDERR_FILENO);
        }
        // An interrupt is the pager's affair now.
        std::signal(SIGINT, SIG_IGN);
        waitpid(process_, nullptr, 0);
    }
}

void Pager::start() {
    isStarted_ = true;
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0) {
        return;
    }
    std::cerr.flush();
    process_ = fork();
    if (process_ == 0) {
        close(ends[1]);
        becomePager(ends[0]);
    }
    close(ends[0]);
    if (process_ > 0) {
        dup2(ends[1], STDOUT_FILENO);
        takesMessages_ = isatty(STDERR_FILENO) != 0;
        if (takesMessages_) {
            dup2(ends[1], STDERR_FILENO);
        }
        endWithPager(process_);
    }
    close(ends[1]);
}

std::streamsize Pager::xsputn(const char* bytes, std::streamsize count) {
    if (!isStarted_) {
        start();
    }
    return output_.sputn(bytes, count);
}

Pager::int_type Pager::overflow(int_type byte) {
    const char character = traits_type::to_char_type(byte);
    return xsputn(&character, 1) == 1 ? byte : traits_type::eof();
}

int Pager::sync() { return isStarted_ ? output_.pubsync() : 0; }

}  // namespace mmq
