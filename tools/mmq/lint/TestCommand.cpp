// mmq test: tries rules on the cases of their files.
#include <iostream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Commands.h"
#include "ExitStatus.h"
#include "ModelLoading.h"
#include "lint/CaseRun.h"
#include "lint/Escaping.h"
#include "lint/RuleNames.h"
#include "lint/RuleReader.h"

namespace mmq {

namespace {

/// Runs all cases of all files, and tells what became of them.
class TestRun {
public:
    explicit TestRun(const Options& options) : options_(options) {}

    void run(const RuleFile& file, const RuleCase& ruleCase, const RepositoryModel& model,
             CompiledSets& sets) {
        const CaseResult result = runCase(ruleCase, model, sets, options_);
        tell(file, ruleCase, result);
        tried_.insert(result.tried.begin(), result.tried.end());
        hasFailedEvaluation_ = hasFailedEvaluation_ || result.hasFailedEvaluation;
    }

    int finish(const std::vector<const Rule*>& rules) const {
        std::cout << passed_ << " passed, " << failed_ << " failed\n";
        std::string untried;
        for (const Rule* rule : rules) {
            if (tried_.count(rule->id) == 0) {
                untried += "    " + rule->id + "\n";
            }
        }
        std::cout << (untried.empty() ? "Every rule is made to fail by a case.\n"
                                      : "No case makes these rules fail:\n")
                  << untried;
        if (passed_ + failed_ == 0) {
            std::cerr << "mmq: There is no case.\n";
        }
        return hasFailedEvaluation_          ? EXIT_EVALUATION
               : passed_ == 0 || failed_ > 0 ? EXIT_FINDINGS
                                             : EXIT_DONE;
    }

private:
    void tell(const RuleFile& file, const RuleCase& ruleCase, const CaseResult& result) {
        const bool isPassed = result.differences.empty();
        ++(isPassed ? passed_ : failed_);
        if (isPassed && !options_.isVerbose) {
            return;
        }
        std::cout << file.source->name() << ':' << ruleCase.place.line << ": "
                  << (isPassed ? "passed: " : "failed: ") << onOneLine(ruleCase.name) << '\n';
        for (const std::string& difference : result.differences) {
            std::cout << "    " << difference << '\n';
        }
    }

    const Options& options_;
    std::size_t passed_ = 0;
    std::size_t failed_ = 0;
    std::set<std::string> tried_;
    bool hasFailedEvaluation_ = false;
};

using Models = std::vector<std::unique_ptr<RepositoryModel>>;

// The models of all cases, in order.
Models readModels(const std::vector<RuleFile>& files, const Options& options) {
    const ReadOptions reading = readOptions(options);
    Models models;
    for (const RuleFile& file : files) {
        for (const RuleCase& ruleCase : file.cases) {
            models.push_back(readModel(ruleCase, reading));
        }
    }
    return models;
}

// Cases show what kinds of models the rules are for; without any, nothing is known.
bool areNamesRight(const CompiledSets& sets, const Models& models, const Options& options) {
    return models.empty() || options.allowsUnknownNames ||
           checkNames(sets.front(), models, options, AbsentClasses::allowed);
}

}  // namespace

int runTest(const Options& options) {
    const std::vector<RuleFile> files = readRuleFiles(options.lint.rules, options);
    const std::vector<const Rule*> rules = rulesOf(files);
    CompiledSets sets = files.empty() ? CompiledSets() : compileRules(rules, 1, options);
    if (sets.empty()) {
        return EXIT_EXPRESSION;
    }
    const Models models = readModels(files, options);
    if (!areNamesRight(sets, models, options)) {
        return EXIT_EXPRESSION;
    }
    TestRun run(options);
    auto model = models.begin();
    for (const RuleFile& file : files) {
        for (const RuleCase& ruleCase : file.cases) {
            run.run(file, ruleCase, **model++, sets);
        }
    }
    return run.finish(rules);
}

}  // namespace mmq
