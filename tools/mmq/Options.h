// The command line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lint/Severity.h"

namespace mmq {

enum class Command { eval, check, lint, test, dump, info, repl, lsp, generate };
enum class Stage { tokens, ast, scopes, builtins, type, target };
/// What is written from the command line itself.
enum class Generated { man, bash, zsh, fish };
/// As what an expression is compiled; automatic goes by its type.
enum class As { automatic, condition, attribute, association };
enum class Format { text, json, csv, mermaid, dot };
/// The forms of a report of findings.
enum class ReportFormat { text, json, csv, sarif, junit, github, html };
enum class MessageFormat { text, json };
enum class When { automatic, always, never };

/// What `lint` and `test` are asked for besides.
struct LintOptions {
    std::vector<std::string> models;
    std::vector<std::string> rules;
    ReportFormat format = ReportFormat::text;
    std::vector<std::pair<ReportFormat, std::string>> outputs;  ///< further reports, with files
    std::optional<Severity> failOn = Severity::error;           ///< nothing for no finding
    std::string baselineFile;
    bool writesBaseline = false;
};

/// What a command line asks for.
struct Options {
    Command command = Command::eval;
    Stage stage = Stage::ast;
    Generated generated = Generated::man;
    As as = As::automatic;
    Format format = Format::text;
    MessageFormat messages = MessageFormat::text;
    When color = When::automatic;
    bool isVerbose = false;
    bool failsOnFalse = false;
    bool allowsUnknownNames = false;
    bool explains = false;
    std::optional<std::string> expression;  ///< given as an argument
    std::string expressionFile;             ///< -f; "-" is the standard input
    std::string modelFile;
    std::string metamodelFile;
    std::string onClass;
    std::string uid;
    std::optional<std::uint64_t> maximumSteps;
    std::optional<double> timeoutSeconds;
    std::optional<std::size_t> jobs;
    LintOptions lint;
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
