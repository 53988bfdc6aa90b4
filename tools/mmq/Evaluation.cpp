#include "Evaluation.h"

#include <utility>

#include "fliodram/MMEvaluationError.h"
#include "why/Why.h"

namespace mmq {

Evaluation::Evaluation(const RepositoryModel& model, const ExpressionText& text,
                       const CompiledExpression& expression, const Options& options,
                       const EvaluationBudget& budget)
    : model_(model),
      text_(text),
      expression_(expression),
      options_(options),
      budget_(budget),
      context_(model),
      writer_(model, options.format, options.onClass.empty(), stream_),
      drawing_(model) {}

EvaluationResults Evaluation::run(const MMObjectRange& objects) {
    const MMObject* object = objects.begin();
    for (; object != objects.end() && !results_.isCut; ++object) {
        try {
            context_.setLimits(budget_.next());
            evaluate(*object);
        } catch (const MMEvaluationError& error) {
            fail(*object, error);
        }
    }
    results_.text = std::exchange(stream_, {}).str();
    return std::exchange(results_, {});
}

void Evaluation::evaluate(MMObject object) {
    if (isDrawn(options_.format)) {
        draw(object);
    } else if (expression_.value) {
        writeValue(object, expression_.value->apply(context_, object));
    } else {
        const std::vector<MMObject> result = expression_.collection->apply(context_, object);
        writer_.writeCollection(object, result, why(object));
    }
}

// What paths reached goes into one drawing.
void Evaluation::draw(MMObject object) {
    const std::vector<MMObject> result = expression_.collection->apply(context_, object);
    context_.setLimits(budget_.next());
    const Reach reach = reachOf(expression_, context_, object);
    hasPath_ = hasPath_ || reach.hasPath;
    drawing_.add(reach, result);
}

// Programs that read results find the sentence there.
void Evaluation::fail(MMObject object, const MMEvaluationError& error) {
    results_.hasFailed = true;
    results_.isCut = error.getKind() == MMEvaluationError::Kind::timeLimit;
    const std::string sentence =
        std::string(error.what()) +
        (results_.isCut && !options_.onClass.empty() ? " What comes after was not evaluated." : "");
    if (options_.format != Format::json) {
        std::string buffer;
        const std::string uid(model_.uid(object, buffer));
        results_.failures.push_back(
            {static_cast<std::size_t>(stream_.tellp()),
             {placeOf(error, *expression_.map, text_), uid + ": " + sentence}});
    }
    writer_.writeError(object, sentence, error.isLimit() ? std::string() : why(object));
}

// The evidence in the form of the output; empty where it is not asked for.
std::string Evaluation::why(MMObject object) {
    if (!options_.explains) {
        return {};
    }
    context_.setLimits(budget_.rest());
    const Evidence evidence = explain(expression_, context_, object);
    return options_.format == Format::json ? evidenceJson(evidence, text_, model_)
                                           : evidenceText(evidence, text_, model_, "    ");
}

void Evaluation::writeValue(MMObject object, const MMValue& value) {
    results_.hasFalse =
        results_.hasFalse || (value.getKind() == MMValue::Kind::boolean && !value.getBoolean());
    writer_.writeValue(object, value, why(object));
}

}  // namespace mmq
