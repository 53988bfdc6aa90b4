// The command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mmq {

enum class Command { eval, check, dump, info };
enum class Stage { tokens, ast, scopes, builtins, type, target };
/// As what an expression is compiled; automatic goes by its type.
enum class As { automatic, condition, attribute, association };
enum class Format { text, json, csv };
enum class MessageFormat { text, json };
enum class When { automatic, always, never };

/// What a command line asks for.
struct Options {
    Command command = Command::eval;
    Stage stage = Stage::ast;
    As as = As::automatic;
    Format format = Format::text;
    MessageFormat messages = MessageFormat::text;
    When color = When::automatic;
    bool isVerbose = false;
    bool failsOnFalse = false;
    std::optional<std::string> expression;  ///< given as an argument
    std::string expressionFile;             ///< -f; "-" is the standard input
    std::string modelFile;
    std::string metamodelFile;
    std::string onClass;
    std::string uid;
    std::optional<std::uint64_t> maximumSteps;
    std::optional<double> timeoutSeconds;
};

/// What became of a command line: options, or the status with which to end at once, after help was
/// shown or a usage error reported.
struct ParsedCommandLine {
    Options options;
    std::optional<int> exitStatus;
};

/// Reads the arguments. An expression that begins with "-" may stand behind "--", and is
/// understood without it.
ParsedCommandLine parseCommandLine(int argumentCount, const char* const* arguments);

}  // namespace mmq
