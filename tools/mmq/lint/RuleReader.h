// Reading rules files.
#pragma once

#include <string>
#include <vector>

#include "lint/Rule.h"

namespace mmq {

/// Reads rules files, in order. Shows everything that is wrong with their form on the standard
/// error stream; the result is empty where anything is. Expressions are not compiled here. Throws
/// std::runtime_error with a sentence where a file cannot be read.
std::vector<RuleFile> readRuleFiles(const std::vector<std::string>& paths, const Options& options);

}  // namespace mmq
