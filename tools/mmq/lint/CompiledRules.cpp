#include "lint/CompiledRules.h"

#include <utility>

#include "EvaluationMessages.h"
#include "Messages.h"

namespace mmq {

namespace {

/// Shows nothing, for a compilation whose messages have been shown.
class SilentMessages : public Messages {
public:
    using Messages::Messages;
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {}
};

CompiledExpression compileText(const ExpressionText& text, As as, const Options& options,
                               bool isSilent) {
    if (isSilent) {
        SilentMessages messages(text, options, false);
        return compile(text, as, messages);
    }
    Messages messages(text, options, false);
    return compile(text, as, messages);
}

// Whether everything in a rule compiles; goes on after an error, to show them all.
bool compileRule(const Rule& rule, const Options& options, bool isSilent, CompiledRule& compiled) {
    compiled.rule = &rule;
    compiled.expression = compileText(
        *rule.expression, rule.isFinding ? As::association : As::condition, options, isSilent);
    bool isRight = static_cast<bool>(compiled.expression);
    for (const MessagePiece& piece : rule.message) {
        CompiledExpression& expression = compiled.message.emplace_back();
        if (piece.expression) {
            expression = compileText(*piece.expression, As::attribute, options, isSilent);
            isRight = isRight && expression;
        }
    }
    return isRight;
}

}  // namespace

std::string CompiledRule::render(MMEvaluationContext& context, MMObject object) const {
    std::string text;
    for (std::size_t i = 0; i < message.size(); ++i) {
        std::string buffer;
        text += message[i] ? message[i].value->apply(context, object).asText(buffer)
                           : std::string_view(rule->message[i].text);
    }
    return text;
}

const CompiledExpression& CompiledRule::failingExpression(const MMEvaluationError& error) const {
    for (const CompiledExpression& part : message) {
        if (part && placeOf(error, *part.map, textOf(part)).line != 0) {
            return part;
        }
    }
    return expression;
}

const ExpressionText& CompiledRule::textOf(const CompiledExpression& part) const {
    for (std::size_t i = 0; i < message.size(); ++i) {
        if (&message[i] == &part) {
            return *rule->message[i].expression;
        }
    }
    return *rule->expression;
}

std::string CompiledRule::sentenceFor(const MMEvaluationError& error) const {
    const CompiledExpression& part = failingExpression(error);
    const MessagePlace place = placeOf(error, *part.map, textOf(part));
    const std::string sentence = error.what();
    return place.line == 0 ? sentence
                           : place.file + ":" + std::to_string(place.line) + ":" +
                                 std::to_string(place.column) + ": " + sentence;
}

std::vector<const Rule*> rulesOf(const std::vector<RuleFile>& files) {
    std::vector<const Rule*> rules;
    for (const RuleFile& file : files) {
        for (const Rule& rule : file.rules) {
            rules.push_back(&rule);
        }
    }
    return rules;
}

CompiledSets compileRules(const std::vector<const Rule*>& rules, std::size_t count,
                          const Options& options) {
    CompiledSets sets(count);
    bool isRight = true;
    for (std::vector<CompiledRule>& set : sets) {
        const bool isSilent = &set != &sets.front();
        for (const Rule* rule : rules) {
            isRight = compileRule(*rule, options, isSilent, set.emplace_back()) && isRight;
        }
        if (!isRight) {
            return {};
        }
    }
    return sets;
}

}  // namespace mmq
