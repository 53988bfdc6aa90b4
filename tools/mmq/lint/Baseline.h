// Findings that are known, so that only new ones count.
#pragma once

#include <string>

#include "lint/Report.h"

namespace mmq {

/// A baseline is a JSON file that lists findings, one a line, sorted:
/// `{"findings":[{"rule":"…","element":"…","message":"…"}]}`. The element is the id, or the path of
/// one that has no id; where it stands in its document plays no part. A finding about the rule
/// itself has no element, and with `"kind":"unused-suppression"` it is about a suppression.

/// Reads a baseline and marks the findings of the report that stand in it, as many of the same as
/// it has; what is left of the rules of the report is fixed. Throws std::runtime_error with a
/// sentence where the file cannot be read as a baseline.
void applyBaseline(const std::string& path, Report& report);

/// Writes the findings of the report that are not suppressed as a baseline, and marks them as
/// known; what the file has of rules that are not of the report stays. Throws std::runtime_error
/// with a sentence where the file cannot be written, or is there and no baseline.
void writeBaseline(const std::string& path, Report& report);

}  // namespace mmq
