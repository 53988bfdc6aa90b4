#include "lint/CaseRun.h"

#include <algorithm>
#include <utility>

#include "lint/Escaping.h"
#include "lint/Judge.h"

namespace mmq {

namespace {

bool isAbout(const Finding& finding, const ExpectedFinding& expected) {
    return finding.rule->id == expected.rule.text &&
           (finding.uid == expected.element || finding.path == expected.element);
}

bool isTried(const RuleCase& ruleCase, const std::string& rule) {
    return ruleCase.rules.empty() ||
           std::any_of(ruleCase.rules.begin(), ruleCase.rules.end(),
                       [&rule](const LocatedText& id) { return id.text == rule; });
}

std::string describe(const Finding& finding) {
    return finding.rule->id + ": " + onOneLine(finding.path) + ": " + onOneLine(finding.message);
}

/// Compares the findings of one case with those expected.
class Comparison {
public:
    explicit Comparison(std::vector<Finding> findings) : findings_(std::move(findings)) {}

    // Takes the finding that is expected from those that are left.
    void expect(const ExpectedFinding& expected) {
        const auto found =
            std::find_if(findings_.begin(), findings_.end(), [&expected](const Finding& finding) {
                return finding.kind == Finding::Kind::element && isAbout(finding, expected);
            });
        if (found == findings_.end()) {
            result_.differences.push_back("not found: " + expected.rule.text + ": " +
                                          onOneLine(expected.element));
            return;
        }
        result_.tried.push_back(expected.rule.text);
        if (expected.message && *expected.message != found->message) {
            result_.differences.push_back("another message: " + describe(*found));
        }
        findings_.erase(found);
    }

    CaseResult finish() {
        for (const Finding& finding : findings_) {
            const bool isFailure = finding.kind == Finding::Kind::failure;
            result_.hasFailedEvaluation = result_.hasFailedEvaluation || isFailure;
            result_.differences.push_back((isFailure ? "failed: " : "not expected: ") +
                                          describe(finding));
        }
        return std::move(result_);
    }

private:
    std::vector<Finding> findings_;
    CaseResult result_;
};

}  // namespace

std::unique_ptr<RepositoryModel> readModel(const RuleCase& ruleCase, const ReadOptions& options) {
    const LocatedText& model = ruleCase.model;
    const std::string& name = model.origin.file->name();
    try {
        return readModelText(model.text, name, options);
    } catch (const ModelError& error) {
        if (error.getFile() != name) {
            throw;
        }
        // The place in the small document is a place in the rules file.
        const std::size_t offset = SourceFile(name, model.text).offset(error.getPlace());
        const std::string what = error.what();
        const std::size_t sentence = what.find(": ") + 2;
        throw ModelError(name, model.origin.file->place(model.origin.offsets[offset]),
                         what.substr(sentence));
    }
}

CaseResult runCase(const RuleCase& ruleCase, const RepositoryModel& model, CompiledSets& sets,
                   const Options& options) {
    std::vector<Finding> findings;
    Judge(sets, options).judge(model, findings);
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [&ruleCase](const Finding& finding) {
                                      return !isTried(ruleCase, finding.rule->id);
                                  }),
                   findings.end());
    Comparison comparison(std::move(findings));
    for (const ExpectedFinding& expected : ruleCase.findings) {
        comparison.expect(expected);
    }
    return comparison.finish();
}

}  // namespace mmq
