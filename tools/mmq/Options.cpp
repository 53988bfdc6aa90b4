// Each command has a parser of its own with the options that mean something to it; options that
// several commands have are added by one function. Before parsing, an argument that begins with
// "-" but is no option is moved behind "--": it is the expression.
#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <set>
#include <utility>

#include "ExitStatus.h"
#include "OptionParsing.h"
#include "Version.h"

namespace mmq {

void addMessages(CLI::App& command, Options& options) {
    addChoice<MessageFormat>(command, "--messages", options.messages, "The form of messages",
                             {{"text", MessageFormat::text}, {"json", MessageFormat::json}});
    addChoice<When>(command, "--color", options.color, "Whether messages are coloured",
                    {{"auto", When::automatic}, {"always", When::always}, {"never", When::never}});
    command.add_flag("-v,--verbose", options.isVerbose, "Show progress messages too");
}

void addMetamodel(CLI::App& command, Options& options) {
    command
        .add_option("--metamodel", options.metamodelFile,
                    "The metamodel of an XMI document, an Ecore file")
        ->type_name("FILE");
}

void addLimits(CLI::App& command, Options& options) {
    addNumber(command, "--max-steps", options.maximumSteps,
              "Steps that the evaluation on one object may take", "N");
    addNumber(command, "--timeout", options.timeoutSeconds, "Time that all evaluations may take",
              "SECONDS");
}

void addJobs(CLI::App& command, Options& options) {
    addNumber(command, "--jobs", options.jobs,
              "Threads that look at objects at once; one for each core by default", "N");
}

void addNames(CLI::App& command, Options& options) {
    command.add_flag("--allow-unknown-names", options.allowsUnknownNames,
                     "Accept names that no object of the model can have");
}

void addWhy(CLI::App& command, Options& options) {
    command.add_flag("--why", options.explains,
                     "Show what decided each result, under the text of the expression");
}

namespace {

void addExpression(CLI::App& command, Options& options) {
    command.add_option("EXPRESSION", options.expression,
                       "The expression; - reads it from the standard input");
    command.add_option("-f,--file", options.expressionFile, "Read the expression from a file")
        ->type_name("FILE");
}

void addAs(CLI::App& command, Options& options) {
    addChoice<As>(command, "--as", options.as,
                  "What the expression is to be; auto goes by its type",
                  {{"auto", As::automatic},
                   {"condition", As::condition},
                   {"attribute", As::attribute},
                   {"association", As::association}});
}

CLI::Option* addModel(CLI::App& command, Options& options) {
    CLI::Option* const model =
        command.add_option("--model", options.modelFile, "The model: an XMI or JSON document")
            ->type_name("FILE");
    addMetamodel(command, options);
    return model;
}

CLI::Option* addOn(CLI::App& command, Options& options, const char* help) {
    return command.add_option("--on", options.onClass, help)->type_name("CLASS");
}

void addFormat(CLI::App& command, Options& options, const Names<Format>& names) {
    addChoice<Format>(command, "--format", options.format, "The form of the output", names);
}

void addEval(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand(
        "eval", "Evaluate an expression on the root of a model, or on objects of it");
    addModel(command, options)->required();
    CLI::Option* const on = addOn(command, options, "Evaluate on every object of a class");
    command.add_option("--uid", options.uid, "Evaluate on the object with this identifier")
        ->type_name("UID")
        ->excludes(on);
    addNames(command, options);
    addAs(command, options);
    addFormat(command, options,
              {{"text", Format::text},
               {"json", Format::json},
               {"csv", Format::csv},
               {"mermaid", Format::mermaid},
               {"dot", Format::dot}});
    command.add_flag("--fail", options.failsOnFalse,
                     "End with status 1 when the result is false for some object");
    addWhy(command, options);
    addLimits(command, options);
    addJobs(command, options);
    addMessages(command, options);
    addExpression(command, options);
    command.callback([&options] { options.command = Command::eval; });
}

void addCheck(CLI::App& program, Options& options) {
    CLI::App& command =
        *program.add_subcommand("check", "Compile an expression and show the messages");
    addModel(command, options);
    addOn(command, options, "The class of the objects that the expression is for");
    addNames(command, options);
    addAs(command, options);
    addMessages(command, options);
    addExpression(command, options);
    command.callback([&options] { options.command = Command::check; });
}

void addDump(CLI::App& program, Options& options) {
    CLI::App& command =
        *program.add_subcommand("dump", "Show what one stage makes of an expression");
    addChoice<Stage>(command, "STAGE", options.stage, "What to show",
                     {{"tokens", Stage::tokens},
                      {"ast", Stage::ast},
                      {"scopes", Stage::scopes},
                      {"builtins", Stage::builtins},
                      {"type", Stage::type},
                      {"target", Stage::target}});
    command.get_option("STAGE")->required();
    addAs(command, options);
    addMessages(command, options);
    addExpression(command, options);
    command.callback([&options] { options.command = Command::dump; });
}

void addInfo(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand(
        "info", "Show the classes of a model with their objects, attributes and associations");
    addModel(command, options)->required();
    addFormat(command, options,
              {{"text", Format::text}, {"json", Format::json}, {"csv", Format::csv}});
    command.callback([&options] { options.command = Command::info; });
}

void addRepl(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand(
        "repl", "A prompt: evaluate one expression after the other on a model");
    addModel(command, options);
    addNames(command, options);
    addAs(command, options);
    addLimits(command, options);
    addMessages(command, options);
    command.callback([&options] { options.command = Command::repl; });
}

void addLsp(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand(
        "lsp", "A language server for editors, over the standard input and output");
    addModel(command, options);
    addOn(command, options, "The class of the objects that files of expressions are for");
    addNames(command, options);
    command.add_flag("--stdio")->description(
        "Speak over the standard streams, which it does anyway");
    command.callback([&options] { options.command = Command::lsp; });
}

void addGenerate(CLI::App& program, Options& options) {
    CLI::App& command =
        *program.add_subcommand("generate", "Write the manual page, or the completion of a shell");
    addChoice<Generated>(command, "FORM", options.generated, "What to write",
                         {{"man", Generated::man},
                          {"bash", Generated::bash},
                          {"zsh", Generated::zsh},
                          {"fish", Generated::fish}});
    command.get_option("FORM")->required();
    command.callback([&options] { options.command = Command::generate; });
}

// The names of all options of a command, and those of them that take a value.
struct OptionNames {
    std::set<std::string> all;
    std::set<std::string> withValue;
};

OptionNames namesOf(const CLI::App& command) {
    OptionNames names;
    for (const CLI::Option* option : command.get_options()) {
        for (const auto* list : {&option->get_snames(), &option->get_lnames()}) {
            for (const std::string& name : *list) {
                const std::string dashed = (name.size() == 1 ? "-" : "--") + name;
                names.all.insert(dashed);
                if (option->get_expected_max() > 0) {
                    names.withValue.insert(dashed);
                }
            }
        }
    }
    return names;
}

// A long option may carry its value behind "=".
bool isOption(const OptionNames& names, const std::string& argument) {
    const bool isLong = argument.rfind("--", 0) == 0;
    return names.all.count(isLong ? argument.substr(0, argument.find('=')) : argument) > 0;
}

bool isCommand(const CLI::App& program, const std::string& name) {
    return !program
                .get_subcommands([&name](const CLI::App* app) { return app->get_name() == name; })
                .empty();
}

// Puts "--" and what begins with "-" but is no option of the command at the end.
std::vector<std::string> withExpressionLast(const CLI::App& program,
                                            std::vector<std::string> arguments) {
    const std::vector<const CLI::App*> commands = program.get_subcommands([&](const CLI::App* app) {
        return !arguments.empty() && app->get_name() == arguments.front();
    });
    if (commands.empty()) {
        return arguments;
    }
    if (commands.front()->get_option_no_throw("EXPRESSION") == nullptr) {
        return arguments;
    }
    const OptionNames names = namesOf(*commands.front());
    std::vector<std::string> result;
    std::vector<std::string> expressions;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--") {
            expressions.insert(expressions.end(), arguments.begin() + static_cast<long>(i) + 1,
                               arguments.end());
            break;
        }
        if (argument.size() > 1 && argument[0] == '-' && !isOption(names, argument)) {
            expressions.push_back(argument);
        } else {
            result.push_back(argument);
            if (names.withValue.count(argument) > 0 && i + 1 < arguments.size()) {
                result.push_back(arguments[++i]);
            }
        }
    }
    if (!expressions.empty()) {
        result.emplace_back("--");
        result.insert(result.end(), expressions.begin(), expressions.end());
    }
    return result;
}

// The library names them from the last to the first.
std::string sentenceForExtras(const CLI::App& program) {
    const std::vector<std::string> extras = program.remaining(true);
    std::string sentence = extras.size() > 1 ? "The following arguments were not expected:"
                                             : "The following argument was not expected:";
    for (const std::string& extra : extras) {
        sentence.append(" ").append(extra);
    }
    return sentence;
}

// What is wrong in the combination of options; empty where nothing is.
std::string findConflict(Options& options) {
    if (options.command == Command::lint || options.command == Command::test) {
        return settleLint(options);
    }
    if (!options.onClass.empty() && options.modelFile.empty() && options.metamodelFile.empty()) {
        return "--on needs --model or --metamodel.";
    }
    const bool isDumpOfBuiltins =
        options.command == Command::dump && options.stage == Stage::builtins;
    const bool hasFile = !options.expressionFile.empty();
    if (isDumpOfBuiltins && (options.expression || hasFile)) {
        return "dump builtins takes no expression.";
    }
    const bool takesExpression = options.command == Command::eval ||
                                 options.command == Command::check ||
                                 options.command == Command::dump;
    if (!takesExpression || isDumpOfBuiltins) {
        return {};
    }
    if (options.explains && options.format != Format::text && options.format != Format::json) {
        return "--why is shown as text or json.";
    }
    if (options.expression.has_value() == hasFile) {
        return hasFile ? "The expression is given twice: as an argument and with -f."
                       : "An expression is missing: give it as an argument, or a file with -f.";
    }
    return {};
}

}  // namespace

void buildProgram(CLI::App& program, Options& options) {
    program.name("mmq");
    program.description("mmq asks models questions in a typed query language.");
    program.set_version_flag("--version", std::string("mmq ") + version);
    program.require_subcommand(0, 1);
    program.get_formatter()->label("SUBCOMMAND", "COMMAND");
    program.set_help_all_flag("--help-all", "Show the help of all commands");
    program.failure_message([](const CLI::App* app, const CLI::Error& error) {
        const std::vector<CLI::App*> commands = app->get_subcommands();
        const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
        const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
        const std::string sentence = isExtra ? sentenceForExtras(*app) : error.what();
        return "mmq: " + sentence + ".\nTry 'mmq" + command + " --help'.\n";
    });
    for (auto* add : {&addEval, &addCheck, &addLint, &addTest, &addDump, &addInfo, &addRepl,
                      &addLsp, &addGenerate}) {
        add(program, options);
    }
    for (CLI::App* command : program.get_subcommands({})) {
        command->group("Commands");
    }
}

ParsedCommandLine parseCommandLine(int argumentCount, const char* const* arguments) {
    ParsedCommandLine parsed;
    CLI::App program;
    buildProgram(program, parsed.options);
    try {
        if (argumentCount > 1 && arguments[1][0] != '-' && !isCommand(program, arguments[1])) {
            throw CLI::ValidationError("There is no command " + std::string(arguments[1]));
        }
        std::vector<std::string> ordered = withExpressionLast(
            program, std::vector<std::string>(arguments + 1, arguments + argumentCount));
        std::reverse(ordered.begin(), ordered.end());
        program.parse(ordered);
        if (program.get_subcommands().empty()) {
            throw CLI::RequiredError("A command");
        }
        const std::string conflict = findConflict(parsed.options);
        if (!conflict.empty()) {
            std::cerr << "mmq: " << conflict << '\n';
            parsed.exitStatus = EXIT_USAGE;
        }
    } catch (const CLI::ParseError& error) {
        parsed.exitStatus = program.exit(error, std::cout, std::cerr) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    return parsed;
}

}  // namespace mmq
