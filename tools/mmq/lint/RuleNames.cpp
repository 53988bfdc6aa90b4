#include "lint/RuleNames.h"

#include <string>

#include "Messages.h"
#include "lint/ErrorLimit.h"
#include "lint/FileErrors.h"
#include "names/NameCheck.h"

namespace mmq {

namespace {

/// Looks at one rule after the other.
class RuleNameCheck {
public:
    RuleNameCheck(const NameVocabulary& vocabulary, MessageSink& sink, AbsentClasses absentClasses)
        : vocabulary_(vocabulary), sink_(sink), absentClasses_(absentClasses) {}

    bool check(const CompiledRule& compiled) const {
        const Rule& rule = *compiled.rule;
        bool isRight = true;
        std::vector<std::string> classes;
        for (const LocatedText& name : rule.classes) {
            isRight = checkClass(rule, name) && isRight;
            classes.push_back(name.text);
        }
        const ClassSet objects = vocabulary_.findClasses(classes);
        if (!vocabulary_.allClasses().meets(objects)) {
            return isRight;  // it will judge nothing: it is for models of another kind
        }
        const NameCheckResult result = checkNames(compiled.expression, vocabulary_, objects);
        isRight = show(result, rule.expression) && isRight;
        // The message is about the objects themselves, or about those that are found.
        const ClassSet& elements = rule.isFinding ? result.yielded : objects;
        for (std::size_t i = 0; i < rule.message.size(); ++i) {
            isRight = show(checkNames(compiled.message[i], vocabulary_, elements),
                           rule.message[i].expression) &&
                      isRight;
        }
        return isRight;
    }

private:
    bool checkClass(const Rule& rule, const LocatedText& name) const {
        const bool mayBeAbsent = rule.mayBeAbsent || absentClasses_ == AbsentClasses::allowed;
        if (vocabulary_.findClass(name.text) || (mayBeAbsent && !vocabulary_.knowsAllClasses())) {
            return true;
        }
        FileErrors errors(rule.file, sink_);
        errors.add(name, sentenceForClass(name.text, vocabulary_));
        const std::string hint =
            sink_.isFull() ? std::string() : hintForClass(name.text, vocabulary_);
        if (!hint.empty()) {
            errors.addHint(hint);
        }
        return false;
    }

    bool show(const NameCheckResult& result, const std::optional<ExpressionText>& text) const {
        if (!text) {
            return true;
        }
        Messages messages(*text, sink_);
        return showFindings(result.findings, messages);
    }

    const NameVocabulary& vocabulary_;
    MessageSink& sink_;
    AbsentClasses absentClasses_;
};

}  // namespace

bool checkNames(const CompiledRule& rule, const NameVocabulary& vocabulary, MessageSink& sink,
                AbsentClasses absentClasses) {
    return RuleNameCheck(vocabulary, sink, absentClasses).check(rule);
}

bool checkNames(const std::vector<CompiledRule>& rules,
                const std::vector<std::unique_ptr<RepositoryModel>>& models, const Options& options,
                AbsentClasses absentClasses) {
    NameVocabulary vocabulary;
    for (const std::unique_ptr<RepositoryModel>& model : models) {
        vocabulary.addModel(*model);
    }
    MessageWriter writer(options);
    ErrorLimit limit(writer);
    bool isRight = true;
    for (auto rule = rules.begin(); rule != rules.end() && !limit.isFull(); ++rule) {
        isRight = checkNames(*rule, vocabulary, limit, absentClasses) && isRight;
    }
    limit.finish(false);
    return isRight;
}

}  // namespace mmq
