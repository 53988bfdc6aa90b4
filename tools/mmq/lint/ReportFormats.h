// The forms in which a report is written.
#pragma once

#include <ostream>

#include "lint/Report.h"

namespace mmq {

/// Each writes a report whole. Of text, `isColored` tells whether severities stand in colours.
void writeText(const Report& report, bool isColored, std::ostream& stream);
void writeJsonLines(const Report& report, std::ostream& stream);
void writeCsv(const Report& report, std::ostream& stream);
void writeSarif(const Report& report, std::ostream& stream);
void writeJunit(const Report& report, std::ostream& stream);
void writeGithub(const Report& report, std::ostream& stream);
void writeHtml(const Report& report, std::ostream& stream);

}  // namespace mmq
