// The dialogs of a host that shows nothing.
#pragma once

#include <string>

#include "api/ExprParserDialogs.h"

/// Drops every message.
class SilentDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {}
};
