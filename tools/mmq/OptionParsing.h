// Options of kinds that the commands have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Options.h"

namespace mmq {

/// The values of an option with their names, in the order of the help.
template <class Value>
using Names = std::vector<std::pair<std::string, Value>>;

template <class Value>
std::string listed(const Names<Value>& names, const char* separator) {
    std::string list;
    for (const auto& [name, value] : names) {
        list += (list.empty() ? "" : separator) + name;
    }
    return list;
}

/// The value of a name; throws CLI::ValidationError where it is none of the names.
template <class Value>
Value chosen(const Names<Value>& names, const std::string& given) {
    for (const auto& [name, value] : names) {
        if (name == given) {
            return value;
        }
    }
    throw CLI::ValidationError(given + " is none of " + listed(names, ", "));
}

/// Adds an option that takes one of the names.
template <class Value, class Variable>
void addChoice(CLI::App& command, const char* option, Variable& variable, const char* help,
               const Names<Value>& names) {
    const auto choose = [&variable, names](const std::string& given) {
        variable = chosen(names, given);
    };
    command.add_option_function<std::string>(option, choose, help)->type_name(listed(names, "|"));
}

/// Adds an option that takes a positive number, of any locale written alike.
template <class Number>
void addNumber(CLI::App& command, const char* option, std::optional<Number>& variable,
               const char* help, const char* valueName) {
    const auto read = [&variable, option](const std::string& given) {
        Number number{};
        const char* const end = given.data() + given.size();
        const auto [parsed, failure] = std::from_chars(given.data(), end, number);
        const bool isPositive = number > Number{0} && number <= std::numeric_limits<Number>::max();
        if (failure != std::errc() || parsed != end || !isPositive) {
            throw CLI::ValidationError(std::string(option) + " takes a positive number, not " +
                                       given);
        }
        variable = number;
    };
    command.add_option_function<std::string>(option, read, help)->type_name(valueName);
}

/// Adds all commands and options to an empty parser, which writes into `options`.
void buildProgram(CLI::App& program, Options& options);

/// The options of messages, of the metamodel, of what evaluations may cost, of threads.
void addMessages(CLI::App& command, Options& options);
void addMetamodel(CLI::App& command, Options& options);
void addLimits(CLI::App& command, Options& options);
void addJobs(CLI::App& command, Options& options);
void addWhy(CLI::App& command, Options& options);
void addNames(CLI::App& command, Options& options);

/// The commands that judge models by rules.
void addLint(CLI::App& program, Options& options);
void addTest(CLI::App& program, Options& options);
/// Sorts the arguments of these commands; returns what is wrong with them, or nothing.
std::string settleLint(Options& options);

}  // namespace mmq
