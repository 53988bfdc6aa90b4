// Reading rules files.
#pragma once

#include <string>
#include <vector>

#include "lint/FileErrors.h"
#include "lint/Rule.h"

namespace mmq {

/// Reads rules files, in order. Shows everything that is wrong with their form on the standard
/// error stream; the result is empty where anything is. Expressions are not compiled here. Throws
/// std::runtime_error with a sentence where a file cannot be read.
std::vector<RuleFile> readRuleFiles(const std::vector<std::string>& paths, const Options& options);

/// Reads one file that is in memory, as far as it can be read: what is missing in a rule is empty.
/// Adds an error for everything that is wrong with the form of the file, seen by itself: the cases
/// of a file that has no rules may be about those of any other.
RuleFile readRuleFile(FileErrors& errors);

}  // namespace mmq
