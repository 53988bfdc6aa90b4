// The commands of the prompt.
#pragma once

#include <string>
#include <vector>

namespace mmq {

/// What a command does.
enum class ReplAction { type, target, why, classes, describe, on, time, help, quit };
/// What stands behind its name.
enum class ReplArgument { none, expression, className, objects, switchOrExpression };

/// A command of the prompt, with its line of help.
struct ReplCommand {
    std::string name;  ///< with its colon
    ReplAction action;
    ReplArgument argument;
    std::string help;

    bool takesExpression() const {
        return argument == ReplArgument::expression || argument == ReplArgument::switchOrExpression;
    }
};

/// All commands, in the order of the help.
const std::vector<ReplCommand>& replCommands();

/// The white space between the words of an input.
inline constexpr const char* replBlanks = " \t\r\n";

/// An input that is taken apart.
struct ReplInput {
    std::string command;   ///< the word with the colon; empty for an expression alone
    std::string argument;  ///< what is behind it, without white space around it
    std::size_t argumentOffset = 0;
};
ReplInput readInput(const std::string& input);

/// The command of a name, which may be cut as long as it fits one only; null where there is none.
const ReplCommand* findCommand(const std::string& name);

/// What there is to say of a name that is no command's.
std::string sentenceForCommand(const std::string& name);

/// The command that an input names without the colon; null where it may be an expression.
const ReplCommand* findWithoutColon(const std::string& input);

/// What `:help` shows.
std::string replHelp();

}  // namespace mmq
