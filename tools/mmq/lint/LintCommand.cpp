// mmq lint: judges models by rules.
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <utility>

#include "Commands.h"
#include "ExitStatus.h"
#include "Jobs.h"
#include "Messages.h"
#include "ModelLoading.h"
#include "lint/Baseline.h"
#include "lint/Linter.h"
#include "lint/ReportFormats.h"
#include "lint/RuleNames.h"
#include "lint/RuleReader.h"

namespace mmq {

namespace {

void writeReport(const Report& report, ReportFormat format, bool isColored, std::ostream& stream) {
    switch (format) {
        case ReportFormat::text:
            return writeText(report, isColored, stream);
        case ReportFormat::json:
            return writeJsonLines(report, stream);
        case ReportFormat::csv:
            return writeCsv(report, stream);
        case ReportFormat::sarif:
            return writeSarif(report, stream);
        case ReportFormat::junit:
            return writeJunit(report, stream);
        case ReportFormat::github:
            return writeGithub(report, stream);
        case ReportFormat::html:
            return writeHtml(report, stream);
    }
}

void writeReports(const Report& report, const Options& options) {
    for (const auto& [format, path] : options.lint.outputs) {
        std::ofstream stream(path, std::ios::binary);
        writeReport(report, format, false, stream);
        if (!stream.flush()) {
            throw std::runtime_error(path + ": The report cannot be written.");
        }
    }
    writeReport(report, options.lint.format, wantsColor(options.color, STDOUT_FILENO), std::cout);
}

// Where evaluations failed, nobody knows what there is to find: nothing is written then.
void useBaseline(const LintOptions& options, Report& report) {
    if (!options.writesBaseline) {
        if (!options.baselineFile.empty()) {
            applyBaseline(options.baselineFile, report);
        }
    } else if (ReportCounts(report).failures == 0) {
        writeBaseline(options.baselineFile, report);
    } else {
        std::cerr << "mmq: " << options.baselineFile
                  << ": The baseline was not written, since evaluations failed.\n";
    }
}

int statusOf(const Report& report) {
    if (ReportCounts(report).failures > 0) {
        return EXIT_EVALUATION;
    }
    const bool fails =
        std::any_of(report.findings.begin(), report.findings.end(),
                    [&report](const Finding& finding) { return report.fails(finding); });
    return fails ? EXIT_FINDINGS : EXIT_DONE;
}

}  // namespace

int runLint(const Options& options) {
    const std::vector<RuleFile> files = readRuleFiles(options.lint.rules, options);
    if (files.empty()) {
        return EXIT_EXPRESSION;
    }
    CompiledSets sets = compileRules(rulesOf(files), jobsFor(options.jobs), options);
    if (sets.empty()) {
        return EXIT_EXPRESSION;
    }
    const auto models = loadModels(options.lint.models, options);
    if (!options.allowsUnknownNames && !checkNames(sets.front(), models, options)) {
        return EXIT_EXPRESSION;
    }
    Report report = lint(sets, models, options);
    useBaseline(options.lint, report);
    writeReports(report, options);
    return statusOf(report);
}

}  // namespace mmq
