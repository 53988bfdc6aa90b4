// The exception for an assumption of the system's own that did not hold.
#pragma once

#include <string>

#include "support/OrvException.h"

/// A broken internal assumption: what() is the message, the rest says where it was noticed.
///
/// Never the user's fault. Inside a compilation the driver ends it with an empty result.
class __attribute__((visibility("default"))) OrvAssertion : public OrvException {
public:
    /// `condition` is the text of the condition that did not hold, `file` names the source file
    /// without folder and extension, and `line` is a line in it or 0 where none is told.
    OrvAssertion(const std::string& condition, const std::string& file, int line,
                 const std::string& message);
    ~OrvAssertion() override;

    const std::string& getCondition() const { return condition_; }
    const std::string& getFile() const { return file_; }
    int getLine() const { return line_; }

private:
    std::string condition_;
    std::string file_;
    int line_;
};
