// The exception log as a test sees it.
#pragma once

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "support/OrvException.h"
#include "support/OrvLogBase.h"

/// Enables categories of the exception log and keeps their lines, for as long as it lives.
class RecordedLog {
public:
    explicit RecordedLog(const std::vector<std::string>& categories) : categories_(categories) {
        OrvException::getLog().setStream(lines_);
        for (const std::string& category : categories_) {
            OrvException::getLog().enable(category);
        }
    }
    RecordedLog(const RecordedLog&) = delete;
    RecordedLog& operator=(const RecordedLog&) = delete;
    ~RecordedLog() {
        for (const std::string& category : categories_) {
            OrvException::getLog().disable(category);
        }
        OrvException::getLog().setStream(std::cerr);
    }

    std::string text() const { return lines_.str(); }

private:
    std::vector<std::string> categories_;
    std::ostringstream lines_;
};
