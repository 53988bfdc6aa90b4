#include "lint/CompiledRules.h"

#include <utility>

#include "EvaluationMessages.h"
#include "Messages.h"
#include "lint/ErrorLimit.h"

namespace mmq {

namespace {

CompiledExpression compileText(const ExpressionText& text, As as, MessageSink& sink) {
    Messages messages(text, sink);
    return compile(text, as, messages);
}

}  // namespace

bool CompiledRule::compile(const Rule& source, MessageSink& sink) {
    rule = &source;
    bool isRight = source.expression.has_value();
    if (isRight) {
        expression = compileText(*source.expression,
                                 source.isFinding ? As::association : As::condition, sink);
        isRight = static_cast<bool>(expression);
    }
    for (const MessagePiece& piece : source.message) {
        CompiledExpression& value = message.emplace_back();
        if (piece.expression) {
            value = compileText(*piece.expression, As::attribute, sink);
            isRight = isRight && value;
        }
    }
    return isRight;
}

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
    MessageWriter writer(options);
    ErrorLimit limit(writer);
    bool isRight = true;
    for (auto rule = rules.begin(); rule != rules.end() && !limit.isFull(); ++rule) {
        isRight = sets.front().emplace_back().compile(**rule, limit) && isRight;
    }
    limit.finish(false);
    return isRight ? std::move(sets) : CompiledSets();
}

void completeSet(CompiledSets& sets, std::size_t number) {
    SilentSink silent;
    std::vector<CompiledRule>& set = sets[number];
    for (std::size_t rule = set.size(); rule < sets.front().size(); ++rule) {
        set.emplace_back().compile(*sets.front()[rule].rule, silent);
    }
}

}  // namespace mmq
