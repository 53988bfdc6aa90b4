// For people: each finding as compilers write theirs, then the reasons of the rules that found
// something. What the baseline or the rules file has put aside is only counted.
#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "lint/Escaping.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

const char* colorOf(const Finding& finding) {
    return finding.severity == Severity::error     ? "\033[1;31m"
           : finding.severity == Severity::warning ? "\033[1;33m"
                                                   : "\033[1;36m";
}

std::string labelOf(const Finding& finding, bool isColored) {
    const std::string label =
        std::string(finding.kind == Finding::Kind::failure ? "failure" : nameOf(finding.severity)) +
        ":";
    return isColored ? colorOf(finding) + label + "\033[0m" : label;
}

void writeIndented(std::string_view text, std::ostream& stream) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        stream << "        " << onOneLine(text.substr(0, end)) << '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void writeFinding(const Finding& finding, bool isColored, std::ostream& stream) {
    stream << finding.file << ':' << finding.place.line << ':' << finding.place.column << ": "
           << labelOf(finding, isColored) << ' ' << onOneLine(finding.message) << " ["
           << finding.rule->id << "]\n";
    if (!finding.className.empty()) {
        stream << "    " << onOneLine(finding.path) << " (" << onOneLine(finding.className)
               << ", uid " << onOneLine(finding.uid) << ")\n";
    }
    writeIndented(finding.why.text, stream);
}

void writeReasons(const Report& report, std::ostream& stream) {
    std::set<const Rule*> broken;
    for (const Finding& finding : report.findings) {
        if (finding.isFresh() && finding.kind == Finding::Kind::element) {
            broken.insert(finding.rule);
        }
    }
    stream << (broken.empty() ? "" : "\n");
    for (const Rule* rule : report.rules) {
        if (broken.count(rule) > 0) {
            stream << rule->id << ": " << onOneLine(rule->reason) << '\n';
            if (!rule->link.empty()) {
                stream << "    " << rule->link << '\n';
            }
        }
    }
}

}  // namespace

void writeText(const Report& report, bool isColored, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        if (finding.isFresh()) {
            writeFinding(finding, isColored, stream);
        }
    }
    writeReasons(report, stream);
    stream << (report.fixed.empty() ? "" : "\n");
    for (const BaselineEntry& entry : report.fixed) {
        stream << "fixed: " << onOneLine(entry.message) << " [" << onOneLine(entry.rule)
               << "]\n    " << onOneLine(entry.element) << '\n';
    }
    const bool isListed = !report.fixed.empty() || ReportCounts(report).fresh() > 0;
    stream << (isListed ? "\n" : "") << summaryOf(report) << ".\n";
}

}  // namespace mmq
