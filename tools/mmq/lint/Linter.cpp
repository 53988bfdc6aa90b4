#include "lint/Linter.h"

#include <string>
#include <utility>

#include "lint/Judge.h"

namespace mmq {

namespace {

/// Something about a rule as such, at a place in its file.
Finding aboutRule(Finding::Kind kind, const Report& report, std::size_t number,
                  const TextPlace& place, std::string message) {
    Finding finding;
    finding.kind = kind;
    finding.rule = report.rules[number];
    finding.ruleNumber = number;
    finding.severity = severityOf(kind, *finding.rule);
    finding.file = finding.rule->file->name();
    finding.place = place;
    finding.message = std::move(message);
    return finding;
}

std::string nothingSentence(const Rule& rule) {
    std::string list;
    for (const LocatedText& name : rule.classes) {
        list += (list.empty() ? "" : ", ") + name.text;
    }
    return std::string("There is no object of the class") +
           (rule.classes.size() > 1 ? "es " : " ") + list +
           ", so the rule judged nothing. Where that is in order, it says \"may-be-absent: "
           "true\".";
}

// One suppression is for one finding, the first about its element that is not yet suppressed.
bool suppress(const Suppression& suppression, const std::vector<Finding*>& findings) {
    for (Finding* finding : findings) {
        const bool isMeant =
            finding->uid == suppression.element || finding->path == suppression.element;
        if (isMeant && finding->isFresh() && finding->kind == Finding::Kind::element) {
            finding->state = Finding::State::suppressed;
            finding->justification = suppression.reason;
            return true;
        }
    }
    return false;
}

// Applies the suppressions of all rules, and returns what there is to tell about them.
std::vector<Finding> suppressAll(Report& report) {
    std::vector<std::vector<Finding*>> byRule(report.rules.size());
    for (Finding& finding : report.findings) {
        byRule[finding.ruleNumber].push_back(&finding);
    }
    // Where evaluations failed, nobody knows what would have been found.
    const bool isCertain = ReportCounts(report).failures == 0;
    std::vector<Finding> unused;
    for (std::size_t number = 0; number < byRule.size(); ++number) {
        for (const Suppression& suppression : report.rules[number]->suppressions) {
            if (!suppress(suppression, byRule[number]) && isCertain) {
                unused.push_back(aboutRule(Finding::Kind::unusedSuppression, report, number,
                                           suppression.place,
                                           "The rule finds nothing about \"" + suppression.element +
                                               "\": the suppression can go."));
            }
        }
    }
    return unused;
}

}  // namespace

Report lint(CompiledSets& sets, const std::vector<std::unique_ptr<RepositoryModel>>& models,
            const Options& options) {
    Report report;
    for (const CompiledRule& compiled : sets.at(0)) {
        report.rules.push_back(compiled.rule);
    }
    report.failOn = options.lint.failOn;
    Judge judge(sets, options);
    for (const std::unique_ptr<RepositoryModel>& model : models) {
        judge.judge(*model, report.findings);
    }
    report.objectCount = judge.objectCount();
    std::vector<Finding> aboutRules = suppressAll(report);
    for (std::size_t number = 0; number < report.rules.size(); ++number) {
        const Rule& rule = *report.rules[number];
        if (!judge.hasJudged(number) && !rule.mayBeAbsent) {
            aboutRules.push_back(aboutRule(Finding::Kind::nothingToJudge, report, number,
                                           rule.place, nothingSentence(rule)));
        }
    }
    report.findings.insert(report.findings.end(), aboutRules.begin(), aboutRules.end());
    return report;
}

}  // namespace mmq
