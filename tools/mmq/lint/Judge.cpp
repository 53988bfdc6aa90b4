// The instances of each class that rules are for are cut into blocks, and each worker judges the
// objects of a block by all rules of the class. What the blocks yield is put into document order
// afterwards, where an object that a rule found on several ways is dropped but once.
#include "lint/Judge.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>

#include "Jobs.h"
#include "fliodram/MMEvaluationError.h"
#include "lint/Escaping.h"
#include "why/Why.h"

namespace mmq {

namespace {

/// What one rule yields for one object.
struct Discovery {
    std::size_t rule;
    MMObject object;
    bool isFailure;
    std::string message;
    TextPlace place;
    Why why;
};

/// Objects of one class, and the rules for it.
struct Block {
    const std::vector<std::size_t>* rules;
    MMObjectRange objects;
};

/// The judging of one model.
class ModelJudge {
public:
    ModelJudge(const RepositoryModel& model, CompiledSets& sets, const EvaluationBudget& budget,
               bool explains)
        : model_(model), sets_(sets), budget_(budget), explains_(explains) {
        for (std::size_t number = 0; number < sets_[0].size(); ++number) {
            for (const LocatedText& name : sets_[0][number].rule->classes) {
                if (model_.hasClass(name.text)) {
                    rulesOfClass_[name.text].push_back(number);
                }
            }
        }
        for (const auto& [name, rules] : rulesOfClass_) {
            cut(model_.instances(name), rules);
        }
    }

    const std::map<std::string_view, std::vector<std::size_t>>& rulesOfClass() const {
        return rulesOfClass_;
    }

    /// How many objects were looked at before time was up.
    std::size_t objectCount() const { return objectCount_; }

    /// The discoveries in order.
    std::vector<Discovery> run() {
        std::vector<std::vector<Discovery>> found(blocks_.size());
        std::vector<std::unique_ptr<MMEvaluationContext>> contexts;
        for (std::size_t worker = 0; worker < sets_.size(); ++worker) {
            contexts.push_back(std::make_unique<MMEvaluationContext>(model_));
        }
        runBlocks(sets_.size(), blocks_.size(), [&](std::size_t worker, std::size_t block) {
            completeSet(sets_, worker);
            std::size_t objectCount = 0;
            for (const MMObject object : blocks_[block].objects) {
                for (const std::size_t rule : *blocks_[block].rules) {
                    judge(*contexts[worker], sets_[worker][rule], rule, object, found[block]);
                }
                objectCount += isOutOfTime_ ? 0 : 1;
            }
            objectCount_ += objectCount;
        });
        std::vector<Discovery> all;
        for (std::vector<Discovery>& part : found) {
            std::move(part.begin(), part.end(), std::back_inserter(all));
        }
        order(all);
        return all;
    }

private:
    void cut(MMObjectRange objects, const std::vector<std::size_t>& rules) {
        const auto size = static_cast<std::ptrdiff_t>(blockSize(objects.size(), sets_.size()));
        for (const MMObject* first = objects.first; first != objects.last;) {
            const MMObject* const last = first + std::min(size, objects.last - first);
            blocks_.push_back({&rules, {first, last, true}});
            first = last;
        }
    }

    void judge(MMEvaluationContext& context, const CompiledRule& compiled, std::size_t rule,
               MMObject object, std::vector<Discovery>& found) {
        if (isOutOfTime_) {
            return;
        }
        try {
            context.setLimits(budget_.next());
            if (!compiled.rule->isFinding) {
                if (!compiled.expression.value->apply(context, object).toBoolean()) {
                    add({rule, object, false, compiled.render(context, object), {}, {}}, found);
                    explain(context, compiled, compiled.expression, object, found.back());
                }
                return;
            }
            for (const MMObject reached : compiled.expression.collection->apply(context, object)) {
                add({rule, reached, false, compiled.render(context, reached), {}, {}}, found);
                explain(context, compiled, compiled.expression, object, found.back());
            }
        } catch (const MMEvaluationError& error) {
            addFailure(context, compiled, {rule, object, true, {}, {}, {}}, error, found);
        }
    }

    void add(Discovery discovery, std::vector<Discovery>& found) const {
        discovery.place = model_.place(discovery.object);
        found.push_back(std::move(discovery));
    }

    void addFailure(MMEvaluationContext& context, const CompiledRule& compiled, Discovery discovery,
                    const MMEvaluationError& error, std::vector<Discovery>& found) {
        const bool isTime = error.getKind() == MMEvaluationError::Kind::timeLimit;
        if (isTime && isOutOfTime_.exchange(true)) {
            return;
        }
        const std::string rest = isTime ? " What comes after was not judged." : "";
        discovery.message = compiled.sentenceFor(error) + rest;
        add(std::move(discovery), found);
        if (!error.isLimit()) {
            explain(context, compiled, compiled.failingExpression(error), found.back().object,
                    found.back());
        }
    }

    // Finds the evidence for a discovery that the expression made on an object.
    void explain(MMEvaluationContext& context, const CompiledRule& compiled,
                 const CompiledExpression& expression, MMObject object,
                 Discovery& discovery) const {
        if (!explains_) {
            return;
        }
        context.setLimits(budget_.rest());
        const bool isElement = !discovery.isFailure && compiled.rule->isFinding;
        const Evidence evidence =
            isElement ? explainElement(expression, context, object, discovery.object)
                      : mmq::explain(expression, context, object);
        const ExpressionText& text = compiled.textOf(expression);
        discovery.why = {evidenceText(evidence, text, model_, ""),
                         evidenceJson(evidence, text, model_)};
    }

    static void order(std::vector<Discovery>& all) {
        const auto key = [](const Discovery& one) {
            return std::make_tuple(one.place.line, one.place.column, one.rule, one.isFailure);
        };
        std::stable_sort(all.begin(), all.end(),
                         [&key](const auto& a, const auto& b) { return key(a) < key(b); });
        const auto isSame = [](const Discovery& a, const Discovery& b) {
            return a.rule == b.rule && a.object == b.object && !a.isFailure && !b.isFailure;
        };
        all.erase(std::unique(all.begin(), all.end(), isSame), all.end());
    }

    const RepositoryModel& model_;
    CompiledSets& sets_;
    const EvaluationBudget& budget_;
    bool explains_;
    std::map<std::string_view, std::vector<std::size_t>> rulesOfClass_;
    std::vector<Block> blocks_;
    std::atomic<bool> isOutOfTime_{false};
    std::atomic<std::size_t> objectCount_{0};
};

std::string stepOf(const RepositoryModel& model, MMObject object) {
    const std::string_view name = model.name(object);
    std::string step(name.empty() ? "(" : "");
    step.append(name.empty() ? model.className(object) : name);
    return step.append(name.empty() ? ")" : "");
}

// The element that a discovery is about, as it is shown.
Finding locate(const RepositoryModel& model, const Rule& rule, Discovery discovery) {
    std::string buffer;
    Finding finding;
    finding.kind = discovery.isFailure ? Finding::Kind::failure : Finding::Kind::element;
    finding.rule = &rule;
    finding.ruleNumber = discovery.rule;
    finding.severity = severityOf(finding.kind, rule);
    finding.file = model.sourceName();
    finding.place = discovery.place;
    finding.className = model.className(discovery.object);
    finding.name = model.name(discovery.object);
    finding.path = qualifiedPath(model, discovery.object);
    finding.uid = model.uid(discovery.object, buffer);
    finding.hasId = finding.uid != model.path(discovery.object);
    finding.message = wellFormed(discovery.message);
    finding.why = std::move(discovery.why);
    return finding;
}

}  // namespace

std::string qualifiedPath(const RepositoryModel& model, MMObject object) {
    std::vector<MMObject> chain;
    for (; object != mmNoObject; object = model.container(object)) {
        chain.push_back(object);
    }
    std::string path;
    for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
        path.append(path.empty() ? "" : "::").append(stepOf(model, *step));
    }
    return path;
}

Judge::Judge(CompiledSets& sets, const Options& options)
    : sets_(sets),
      explains_(options.explains),
      budget_(options),
      hasJudged_(sets.at(0).size(), false) {}

void Judge::judge(const RepositoryModel& model, std::vector<Finding>& findings) {
    ModelJudge judge(model, sets_, budget_, explains_);
    for (const auto& [name, rules] : judge.rulesOfClass()) {
        for (const std::size_t rule : rules) {
            hasJudged_[rule] = true;
        }
    }
    for (Discovery& discovery : judge.run()) {
        const Rule& rule = *sets_[0][discovery.rule].rule;
        findings.push_back(locate(model, rule, std::move(discovery)));
    }
    objectCount_ += judge.objectCount();
}

}  // namespace mmq
