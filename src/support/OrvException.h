// The base of the exceptions that the system throws itself, and the door to the log of exceptions.
#pragma once

#include <stdexcept>
#include <string>

class OrvLogBase;

/// A failure inside the system: a bad dereference, a broken assumption, a text that cannot be read.
///
/// Carries one sentence, read with what(). Copying never throws, so that an exception in flight
/// cannot be replaced by another. Belongs to the thread that throws it.
class __attribute__((visibility("default"))) OrvException : public std::runtime_error {
public:
    explicit OrvException(const std::string& message);
    OrvException(const OrvException&) = default;
    OrvException& operator=(const OrvException&) = default;
    ~OrvException() override;

    /// The log of the process to which throwers and catchers write; every category is off at first.
    static OrvLogBase& getLog();
};

/// Throws `exception` after writing its text to the exception log, if the log's category "Throw"
/// is enabled. Every exception of the system is thrown through here.
template <class Exception>
[[noreturn]] void throwLogged(const Exception& exception);

/// Writes the line that announces a throw; throwLogged() is the usual caller.
__attribute__((visibility("default"))) void logThrow(const char* message) noexcept;

template <class Exception>
[[noreturn]] void throwLogged(const Exception& exception) {
    logThrow(exception.what());
    throw exception;
}
