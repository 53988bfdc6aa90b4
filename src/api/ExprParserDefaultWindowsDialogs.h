// The dialogs of a host that has none of its own: message boxes.
#pragma once

#include "api/ExprParserDialogs.h"

/// Shows errors in message boxes, which on this platform write to the standard error stream.
///
/// Only messages with a true flag and severity Error are shown. The system never sets the flag, so
/// this shows none of the system's own messages: a host that wants them implements
/// ExprParserDialogs itself. Keeps no state.
class __attribute__((visibility("default"))) ExprParserDefaultWindowsDialogs
    : public ExprParserDialogs {
public:
    ExprParserDefaultWindowsDialogs();
    ExprParserDefaultWindowsDialogs(const ExprParserDefaultWindowsDialogs&);
    ExprParserDefaultWindowsDialogs& operator=(const ExprParserDefaultWindowsDialogs&);
    ~ExprParserDefaultWindowsDialogs() override;

    /// Shows the question in a box with the buttons Yes and No; the default answer is not used.
    bool askYesNo(const std::string& question, bool defaultAnswer) override;

    /// Shows "[line LINE: column COLUMN]: MESSAGE" under the caption `source`.
    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool flag) override;
};
