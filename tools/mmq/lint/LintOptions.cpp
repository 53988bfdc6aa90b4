// The command lines of lint and test. What ends in .yaml or .yml are rules, what does not are
// models: so a shell may expand a pattern behind --model.
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "OptionParsing.h"

namespace mmq {

namespace {

const Names<ReportFormat>& formatNames() {
    static const Names<ReportFormat> names = {
        {"text", ReportFormat::text},   {"json", ReportFormat::json},
        {"csv", ReportFormat::csv},     {"sarif", ReportFormat::sarif},
        {"junit", ReportFormat::junit}, {"github", ReportFormat::github},
        {"html", ReportFormat::html}};
    return names;
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isRulesFile(const std::string& path) {
    return path == "-" || endsWith(path, ".yaml") || endsWith(path, ".yml");
}

void addOutput(const std::string& given, LintOptions& options) {
    const std::size_t equals = given.find('=');
    if (equals == std::string::npos || equals + 1 == given.size()) {
        throw CLI::ValidationError("--output takes FORMAT=FILE, not " + given);
    }
    options.outputs.emplace_back(chosen(formatNames(), given.substr(0, equals)),
                                 given.substr(equals + 1));
}

// Whether two names are of one file that can be overwritten, be it there or not.
bool isSameFile(const std::string& a, const std::string& b) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (fs::exists(a, error) && !fs::is_regular_file(a, error)) {
        return false;
    }
    return fs::equivalent(a, b, error) ||
           fs::path(a).lexically_normal() == fs::path(b).lexically_normal();
}

// What is wrong where a file would be written that is needed; empty where none is.
std::string findOverwriting(const Options& options) {
    const LintOptions& lint = options.lint;
    std::vector<std::string> used = lint.models;
    used.insert(used.end(), lint.rules.begin(), lint.rules.end());
    used.push_back(options.metamodelFile);
    std::vector<std::pair<std::string, std::string>> written;
    if (lint.writesBaseline) {
        written.emplace_back("--write-baseline", lint.baselineFile);
    } else {
        used.push_back(lint.baselineFile);
    }
    for (const auto& [format, path] : lint.outputs) {
        written.emplace_back("--output", path);
    }
    for (const auto& [option, path] : written) {
        for (const std::string& other : used) {
            if (isSameFile(path, other)) {
                std::string sentence = option;
                return sentence.append(" would overwrite ").append(other).append(".");
            }
        }
        used.push_back(path);
    }
    return {};
}

void addRules(CLI::App& command, LintOptions& options, const char* help) {
    command.add_option("RULES", options.rules, help)->type_name("");
}

}  // namespace

void addLint(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand("lint", "Judge models by the rules of rules files");
    LintOptions& lint = options.lint;
    command.add_option("--model", lint.models, "The models: XMI or JSON documents")
        ->required()
        ->type_name("FILE");
    addMetamodel(command, options);
    addChoice(command, "--format", lint.format, "The form of the report", formatNames());
    command
        .add_option_function<std::vector<std::string>>(
            "--output",
            [&lint](const std::vector<std::string>& all) {
                for (const std::string& given : all) {
                    addOutput(given, lint);
                }
            },
            "Write the report to a file as well; may be given several times")
        ->type_name("FORMAT=FILE")
        ->allow_extra_args(false);
    addChoice<std::optional<Severity>>(command, "--fail-on", lint.failOn,
                                       "The least severity that gives status 1; error by default",
                                       {{"error", Severity::error},
                                        {"warning", Severity::warning},
                                        {"note", Severity::note},
                                        {"never", {}}});
    command
        .add_option("--baseline", lint.baselineFile,
                    "Findings that are known; only others give status 1")
        ->type_name("FILE");
    command.add_flag("--write-baseline", lint.writesBaseline,
                     "Write what is found to the file of --baseline");
    addWhy(command, options);
    addNames(command, options);
    addJobs(command, options);
    addLimits(command, options);
    addMessages(command, options);
    addRules(command, lint, "Rules files; they end in .yaml or .yml, - is the standard input");
    command.callback([&options] { options.command = Command::lint; });
}

void addTest(CLI::App& program, Options& options) {
    CLI::App& command = *program.add_subcommand("test", "Try rules on the cases of their files");
    addRules(command, options.lint, "Rules files; - is the standard input");
    addMetamodel(command, options);
    addNames(command, options);
    addLimits(command, options);
    addMessages(command, options);
    command.callback([&options] { options.command = Command::test; });
}

std::string settleLint(Options& options) {
    LintOptions& lint = options.lint;
    if (options.command == Command::lint) {
        std::vector<std::string> given = std::exchange(lint.models, {});
        given.insert(given.end(), lint.rules.begin(), lint.rules.end());
        lint.rules.clear();
        for (std::string& path : given) {
            (isRulesFile(path) ? lint.rules : lint.models).push_back(std::move(path));
        }
        if (lint.models.empty()) {
            return "A model is missing: name one with --model.";
        }
    }
    if (lint.rules.empty()) {
        return options.command == Command::lint
                   ? "Rules are missing: name a file that ends in .yaml."
                   : "A rules file is missing.";
    }
    if (lint.writesBaseline && lint.baselineFile.empty()) {
        return "--write-baseline needs --baseline FILE, the file to write.";
    }
    return findOverwriting(options);
}

}  // namespace mmq
