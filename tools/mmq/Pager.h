// Output that is longer than the terminal, shown page by page.
#pragma once

#include <sys/types.h>

#include <ostream>
#include <streambuf>
#include <string>

namespace mmq {

/// Stands before the standard output while a command runs: with the first byte it starts a pager
/// and sends the standard output there, and the standard error stream too where that is a
/// terminal, so that messages stand where they belong. Its end waits for the pager's. Without
/// output there is no pager.
class Pager : private std::streambuf {
public:
    /// Whether the standard output is a terminal that can show pages, and a pager is named:
    /// $MMQ_PAGER, $PAGER or less.
    static bool isWanted();

    /// Takes the place of the stream's buffer, which writes to the standard output.
    explicit Pager(std::ostream& stream);
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;
    ~Pager() override;

private:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int_type overflow(int_type byte) override;
    int sync() override;
    void start();

    std::ostream& stream_;
    std::streambuf& output_;
    pid_t process_ = 0;  ///< 0 until it was started, or where that failed
    bool isStarted_ = false;
    bool takesMessages_ = false;
};

}  // namespace mmq
