// The tables of functions in the guide have two columns: how functions are written, each between
// backquotes and its name first, and what they do.
#include "lsp/FunctionHelp.h"

#include <map>
#include <sstream>
#include <string_view>

#include "LanguageGuide.h"

namespace mmq {

namespace {

using HelpByName = std::map<std::string, std::string, std::less<>>;

// A "|" within a cell is written with a backslash.
std::string unescaped(std::string_view cell) {
    std::string text;
    for (std::size_t i = 0; i < cell.size(); ++i) {
        const bool isEscape = cell.substr(i, 2) == "\\|";
        text.push_back(cell[isEscape ? ++i : i]);
    }
    return text;
}

void takeRow(std::string_view row, HelpByName& help) {
    constexpr std::string_view margin = "| ";
    const std::size_t middle = row.find("` | ");
    const std::size_t end = row.rfind(" |");
    if (middle == std::string_view::npos || end < middle + 4) {
        return;
    }
    const std::string text = unescaped(row.substr(middle + 4, end - middle - 4));
    std::istringstream forms{std::string(row.substr(margin.size(), middle - margin.size()))};
    for (std::string form; std::getline(forms, form, '`');) {
        const std::string name = form.substr(0, form.find(' '));
        if (!name.empty() && name != ",") {
            std::string& known = help[name];
            known.append(known.empty() ? "" : "\n\n").append(text);
        }
    }
}

HelpByName readGuide() {
    HelpByName help;
    std::istringstream lines(languageGuide);
    bool isInTable = false;
    for (std::string line; std::getline(lines, line);) {
        isInTable = line == "| function | meaning |" || (isInTable && line.rfind('|', 0) == 0);
        if (isInTable) {
            takeRow(line, help);
        }
    }
    return help;
}

}  // namespace

std::string functionHelp(const std::string& name) {
    static const HelpByName help = readGuide();
    const auto found = help.find(name);
    return found != help.end() ? found->second : std::string();
}

}  // namespace mmq
