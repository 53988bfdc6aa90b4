#include "lint/Report.h"

#include "Counted.h"

namespace mmq {

namespace {

void appendPart(std::string& text, const std::string& separator, std::size_t count,
                const std::string& part) {
    if (count > 0) {
        text += (text.empty() ? "" : separator) + part;
    }
}

}  // namespace

Severity severityOf(Finding::Kind kind, const Rule& rule) {
    return kind == Finding::Kind::failure             ? Severity::error
           : kind == Finding::Kind::unusedSuppression ? Severity::warning
                                                      : rule.severity;
}

ReportCounts::ReportCounts(const Report& report) {
    for (const Finding& finding : report.findings) {
        if (finding.kind == Finding::Kind::failure) {
            ++failures;
        } else if (finding.state == Finding::State::known) {
            ++known;
        } else if (finding.state == Finding::State::suppressed) {
            ++suppressed;
        } else {
            std::size_t& count = finding.severity == Severity::error     ? errors
                                 : finding.severity == Severity::warning ? warnings
                                                                         : notes;
            ++count;
        }
    }
}

std::string summaryOf(const Report& report) {
    const ReportCounts counts(report);
    std::string bySeverity;
    appendPart(bySeverity, ", ", counts.errors, counted(counts.errors, "error"));
    appendPart(bySeverity, ", ", counts.warnings, counted(counts.warnings, "warning"));
    appendPart(bySeverity, ", ", counts.notes, counted(counts.notes, "note"));
    std::string text = counted(counts.fresh(), report.hasBaseline ? "new finding" : "finding");
    text += bySeverity.empty() ? "" : " (" + bySeverity + ")";
    appendPart(text, ", ", counts.known, std::to_string(counts.known) + " in the baseline");
    appendPart(text, ", ", report.fixed.size(), std::to_string(report.fixed.size()) + " fixed");
    appendPart(text, ", ", counts.suppressed, std::to_string(counts.suppressed) + " suppressed");
    appendPart(text, ", ", counts.failures, counted(counts.failures, "failed evaluation"));
    return text + "; " + counted(report.rules.size(), "rule") + ", " +
           counted(report.objectCount, "object") + " judged";
}

const char* nameOf(Finding::Kind kind) {
    switch (kind) {
        case Finding::Kind::element:
            return "element";
        case Finding::Kind::nothingToJudge:
            return "nothing-to-judge";
        case Finding::Kind::unusedSuppression:
            return "unused-suppression";
        case Finding::Kind::failure:
            break;
    }
    return "failure";
}

const char* nameOf(Finding::State state) {
    return state == Finding::State::fresh   ? "new"
           : state == Finding::State::known ? "known"
                                            : "suppressed";
}

}  // namespace mmq
