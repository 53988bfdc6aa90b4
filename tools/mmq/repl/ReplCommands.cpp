#include "repl/ReplCommands.h"

#include <algorithm>

#include "names/NearestNames.h"

namespace mmq {

namespace {

const char* argumentName(ReplArgument argument) {
    switch (argument) {
        case ReplArgument::none:
            return "";
        case ReplArgument::expression:
            return " EXPR";
        case ReplArgument::className:
            return " CLASS";
        case ReplArgument::objects:
            return " CLASS|UID";
        case ReplArgument::switchOrExpression:
            return " on|off|EXPR";
    }
    return "";
}

// Those that a name may be cut from, a command of this very name first; none for the colon alone.
std::vector<const ReplCommand*> commandsBeginningWith(const std::string& name) {
    std::vector<const ReplCommand*> found;
    for (const ReplCommand& command : replCommands()) {
        if (name.size() > 1 && command.name.starts_with(name)) {
            found.insert(command.name == name ? found.begin() : found.end(), &command);
        }
    }
    return found;
}

}  // namespace

const std::vector<ReplCommand>& replCommands() {
    static const std::vector<ReplCommand> commands = {
        {":type", ReplAction::type, ReplArgument::expression, "the type of an expression"},
        {":target", ReplAction::target, ReplArgument::expression, "what is made of it"},
        {":why", ReplAction::why, ReplArgument::expression, "its result, and why it is that"},
        {":classes", ReplAction::classes, ReplArgument::none, "the classes of the model"},
        {":describe", ReplAction::describe, ReplArgument::className,
         "the attributes and associations of a class"},
        {":on", ReplAction::on, ReplArgument::objects,
         "evaluate on the objects of a class, on one object; alone: on the root"},
        {":time", ReplAction::time, ReplArgument::switchOrExpression,
         "tell how long evaluations take, or one does"},
        {":help", ReplAction::help, ReplArgument::none, "this text"},
        {":quit", ReplAction::quit, ReplArgument::none, "leave, as Ctrl-D does"}};
    return commands;
}

ReplInput readInput(const std::string& input) {
    ReplInput result;
    const std::size_t begin = input.find_first_not_of(replBlanks);
    std::size_t rest = begin;
    if (begin < input.size() && input[begin] == ':') {
        const std::size_t end = std::min(input.size(), input.find_first_of(replBlanks, begin));
        result.command = input.substr(begin, end - begin);
        rest = input.find_first_not_of(replBlanks, end);
    }
    result.argumentOffset = std::min(rest, input.size());
    result.argument = input.substr(result.argumentOffset);
    result.argument.resize(result.argument.find_last_not_of(replBlanks) + 1);
    return result;
}

const ReplCommand* findCommand(const std::string& name) {
    const std::vector<const ReplCommand*> found = commandsBeginningWith(name);
    return found.size() == 1 || (!found.empty() && found.front()->name == name) ? found.front()
                                                                                : nullptr;
}

std::string sentenceForCommand(const std::string& name) {
    if (name == ":") {
        return "The name of a command stands right behind the colon. :help shows what there is.";
    }
    std::vector<std::string> meant;
    for (const ReplCommand* command : commandsBeginningWith(name)) {
        meant.push_back(command->name);
    }
    if (meant.empty()) {
        std::vector<std::string> known;
        for (const ReplCommand& command : replCommands()) {
            known.push_back(command.name);
        }
        meant = nearestNames(name, known);
    }
    std::string sentence("There is no command ");
    sentence.append(name).append(". ");
    return sentence.append(meant.empty() ? ":help shows those that there are."
                                         : didYouMean(meant, "", ""));
}

const ReplCommand* findWithoutColon(const std::string& input) {
    for (const ReplCommand& command : replCommands()) {
        if (command.argument == ReplArgument::none && command.name.substr(1) == input) {
            return &command;
        }
    }
    return input == "exit" ? findCommand(":quit") : nullptr;
}

std::string replHelp() {
    constexpr std::size_t column = 22;
    std::string text =
        "An expression is evaluated on the root of the model, or on what :on chose. It may go on\n"
        "over several lines; an empty line ends it.\n\n";
    for (const ReplCommand& command : replCommands()) {
        std::string line = "  " + command.name + argumentName(command.argument);
        line.resize(std::max(column, line.size() + 2), ' ');
        text += line + command.help + "\n";
    }
    return text + "\nTab completes what is begun. Ctrl-C stops an evaluation.\n";
}

}  // namespace mmq
