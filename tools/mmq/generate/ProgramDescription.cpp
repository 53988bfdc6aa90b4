#include "generate/ProgramDescription.h"

#include <CLI/CLI.hpp>

#include "OptionParsing.h"

namespace mmq {

namespace {

std::vector<std::string> choicesOf(const std::string& value) {
    const bool isList = value.find('|') != std::string::npos;
    return isList ? CLI::detail::split(value, '|') : std::vector<std::string>();
}

OptionDescription describe(const CLI::Option& option) {
    OptionDescription description;
    for (const std::string& name : option.get_snames()) {
        description.names.push_back(std::string("-").append(name));
    }
    for (const std::string& name : option.get_lnames()) {
        description.names.push_back(std::string("--").append(name));
    }
    description.help = option.get_description();
    description.isByPlace = option.get_positional();
    if (description.isByPlace) {
        description.names = {option.get_name(true)};
    }
    if (option.get_expected_max() > 0) {
        description.value = option.get_type_name();
        description.choices = choicesOf(description.value);
    }
    return description;
}

CommandDescription describe(const CLI::App& app) {
    const bool isProgram = app.get_parent() == nullptr;
    CommandDescription command{isProgram ? "" : app.get_name(), app.get_description(), {}};
    for (const CLI::Option* const option : app.get_options()) {
        // Each command has this one for the program's sake.
        if (isProgram || option->get_name() != "--help-all") {
            command.options.push_back(describe(*option));
        }
    }
    return command;
}

}  // namespace

ProgramDescription describeProgram() {
    CLI::App app;
    Options unused;
    buildProgram(app, unused);
    ProgramDescription description;
    description.program = describe(app);
    for (const CLI::App* const command : app.get_subcommands({})) {
        description.commands.push_back(describe(*command));
    }
    return description;
}

std::string joined(const std::vector<std::string>& names, const char* separator) {
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? "" : separator;
        text += name;
    }
    return text;
}

}  // namespace mmq
