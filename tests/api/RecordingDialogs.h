// Dialogs that write down every message, for tests.
#pragma once

#include <string>
#include <vector>

#include "api/ExprParserDialogs.h"

/// Keeps each message as one line: "LINE:COLUMN SOURCE SEVERITY MESSAGE".
class RecordingDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }

    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool flag) override {
        messages.push_back(std::to_string(line) + ":" + std::to_string(column) + " " + source +
                           " " + std::to_string(severity) + (flag ? " flag " : " ") + message);
    }

    std::vector<std::string> messages;
};
