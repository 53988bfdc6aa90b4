// What the command line offers, in a form that manuals and completions are written from.
#pragma once

#include <string>
#include <vector>

namespace mmq {

/// An option, or an argument that stands by its place. Plain data.
struct OptionDescription {
    std::vector<std::string> names;  ///< with their dashes; of an argument by place, its label
    std::string help;
    std::string value;                 ///< what it takes, such as FILE; empty for a flag
    std::vector<std::string> choices;  ///< the values, where they are few
    bool isByPlace = false;
};

struct CommandDescription {
    std::string name;
    std::string help;
    std::vector<OptionDescription> options;
};

/// The program: its own options stand in a command without a name.
struct ProgramDescription {
    CommandDescription program;
    std::vector<CommandDescription> commands;
};

/// Describes the command line as it is parsed.
ProgramDescription describeProgram();

/// The forms in which the description is written.
std::string manualPage(const ProgramDescription& description);
std::string bashCompletion(const ProgramDescription& description);
std::string zshCompletion(const ProgramDescription& description);
std::string fishCompletion(const ProgramDescription& description);

/// All names of something, with a separator between them.
std::string joined(const std::vector<std::string>& names, const char* separator);

}  // namespace mmq
