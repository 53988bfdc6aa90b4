// The message box behind the default dialogs; on this platform, the standard error stream.
#pragma once

#include <string>

/// Shows one message to the person in front of the machine.
///
/// There is no window system here: caption and text go to the standard error stream, and a
/// question is answered with No, since nobody can be asked. Keeps no state; any thread may call.
class __attribute__((visibility("default"))) OrvMessageBox {
public:
    /// The style of a box with an error icon, and of one with the buttons Yes and No.
    static constexpr int iconError = 16;
    static constexpr int buttonsYesNo = 4;
    /// The results of a box with the buttons Yes and No.
    static constexpr int resultYes = 6;
    static constexpr int resultNo = 7;

    /// Shows `text` under `caption`; returns the button that was chosen.
    static int show(const std::string& text, const std::string& caption, int style);
};
