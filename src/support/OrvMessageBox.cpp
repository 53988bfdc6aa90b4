#include "support/OrvMessageBox.h"

#include <iostream>

int OrvMessageBox::show(const std::string& text, const std::string& caption, int style) {
    constexpr int resultOk = 1;
    std::cerr << caption + ": " + text + '\n' << std::flush;
    return (style & buttonsYesNo) != 0 ? resultNo : resultOk;
}
