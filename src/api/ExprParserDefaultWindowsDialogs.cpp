#include "api/ExprParserDefaultWindowsDialogs.h"

#include "support/OrvMessageBox.h"

ExprParserDefaultWindowsDialogs::ExprParserDefaultWindowsDialogs() = default;
ExprParserDefaultWindowsDialogs::ExprParserDefaultWindowsDialogs(
    const ExprParserDefaultWindowsDialogs&) = default;
ExprParserDefaultWindowsDialogs& ExprParserDefaultWindowsDialogs::operator=(
    const ExprParserDefaultWindowsDialogs&) = default;
ExprParserDefaultWindowsDialogs::~ExprParserDefaultWindowsDialogs() = default;

bool ExprParserDefaultWindowsDialogs::askYesNo(const std::string& question,
                                               bool /*defaultAnswer*/) {
    return OrvMessageBox::show(question, "Input required", OrvMessageBox::buttonsYesNo) ==
           OrvMessageBox::resultYes;
}

void ExprParserDefaultWindowsDialogs::showMessage(int line, int column, const std::string& source,
                                                  const std::string& message,
                                                  MessageSeverity severity, bool flag) {
    if (flag && severity == Error) {
        OrvMessageBox::show("[line " + std::to_string(line) + ": column " + std::to_string(column) +
                                "]: " + message,
                            source, OrvMessageBox::iconError);
    }
}
