// The XML of JUnit, in the form that Jenkins reads: a suite for each rule with a case for each
// element that it is about, or one that passed where there is none. Findings that do not fail the
// build pass with a note of their own; what is put aside is skipped.
#include <string>
#include <vector>

#include "lint/Escaping.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

/// The findings of one rule.
struct Suite {
    const Rule* rule = nullptr;
    std::vector<const Finding*> findings;
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;
};

std::vector<Suite> suitesOf(const Report& report) {
    std::vector<Suite> suites(report.rules.size());
    for (std::size_t number = 0; number < suites.size(); ++number) {
        suites[number].rule = report.rules[number];
    }
    for (const Finding& finding : report.findings) {
        Suite& suite = suites[finding.ruleNumber];
        suite.findings.push_back(&finding);
        const bool isFailure = finding.kind == Finding::Kind::failure;
        suite.errors += isFailure ? 1 : 0;
        suite.failures += !isFailure && report.fails(finding) ? 1 : 0;
        suite.skipped += finding.isFresh() ? 0 : 1;
    }
    return suites;
}

std::string detailsOf(const Finding& finding) {
    std::string text = finding.file + ":" + std::to_string(finding.place.line) + ":" +
                       std::to_string(finding.place.column) + ": " + nameOf(finding.severity) +
                       ": " + finding.message + "\n";
    if (!finding.className.empty()) {
        text += finding.path + " (" + finding.className + ", uid " + finding.uid + ")\n";
    }
    text += finding.rule->reason + "\n";
    text += finding.rule->link.empty() ? "" : finding.rule->link + "\n";
    text += finding.why.text;
    return text;
}

// What befell the case: an element of the schema.
std::string outcomeOf(const Report& report, const Finding& finding) {
    const std::string details = xmlText(detailsOf(finding));
    if (!finding.isFresh()) {
        return "<skipped>" +
               xmlText(finding.state == Finding::State::known ? "It stands in the baseline."
                                                              : finding.justification) +
               "</skipped>";
    }
    const char* const element = finding.kind == Finding::Kind::failure ? "error"
                                : report.fails(finding)                ? "failure"
                                                                       : nullptr;
    if (element == nullptr) {
        return "<system-out>" + details + "</system-out>";
    }
    return std::string("<") + element + " type=\"" + nameOf(finding.severity) + "\" message=\"" +
           xmlText(finding.message) + "\">" + details + "</" + element + ">";
}

void writeSuite(const Report& report, const Suite& suite, std::ostream& stream) {
    const std::string id = xmlText(suite.rule->id);
    const std::size_t tests = suite.findings.empty() ? 1 : suite.findings.size();
    stream << "  <testsuite name=\"" << id << "\" tests=\"" << tests << "\" failures=\""
           << suite.failures << "\" errors=\"" << suite.errors << "\" skipped=\"" << suite.skipped
           << "\">\n";
    if (suite.findings.empty()) {
        stream << "    <testcase classname=\"" << id << "\" name=\"no finding\"/>\n";
    }
    for (const Finding* finding : suite.findings) {
        const std::string name = finding->className.empty() ? nameOf(finding->kind) : finding->path;
        stream << "    <testcase classname=\"" << id << "\" name=\"" << xmlText(name) << "\">"
               << outcomeOf(report, *finding) << "</testcase>\n";
    }
    stream << "  </testsuite>\n";
}

}  // namespace

void writeJunit(const Report& report, std::ostream& stream) {
    const std::vector<Suite> suites = suitesOf(report);
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    for (const Suite& suite : suites) {
        tests += suite.findings.empty() ? 1 : suite.findings.size();
        failures += suite.failures;
        errors += suite.errors;
    }
    stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"mmq lint\" tests=\""
           << tests << "\" failures=\"" << failures << "\" errors=\"" << errors << "\">\n";
    for (const Suite& suite : suites) {
        writeSuite(report, suite, stream);
    }
    stream << "</testsuites>\n";
}

}  // namespace mmq
