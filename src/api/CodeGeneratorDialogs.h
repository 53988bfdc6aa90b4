// The dialogs of compilations that the system makes for itself.
#pragma once

#include "api/ExprParserDialogs.h"

/// Turns every error of a compilation into an OrvAssertion: a text that the system wrote itself
/// has no error to show, so one would be a fault of the system. Progress messages are ignored.
class CodeGeneratorDialogs : public ExprParserDialogs {
public:
    /// The default answer.
    bool askYesNo(const std::string& question, bool defaultAnswer) override;

    /// Throws the assertion "SOURCE: [line LINE, column COLUMN]: MESSAGE" for an error, whatever
    /// the flag.
    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool flag) override;
};
