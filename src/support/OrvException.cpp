#include "support/OrvException.h"

#include "support/OrvLogBase.h"

OrvException::OrvException(const std::string& message) : std::runtime_error(message) {}

OrvException::~OrvException() = default;

OrvLogBase& OrvException::getLog() {
    static OrvLogBase log;
    return log;
}

void logThrow(const char* message) noexcept {
    OrvException::getLog().writeLine("Throw", {"Exception throw: ", message});
}
