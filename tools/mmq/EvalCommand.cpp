// mmq eval: evaluates an expression on one object of a model, or on all objects of a class.
#include <iostream>

#include "Commands.h"
#include "Compilation.h"
#include "EvaluationBudget.h"
#include "EvaluationMessages.h"
#include "ExitStatus.h"
#include "ModelLoading.h"
#include "ResultWriter.h"
#include "fliodram/MMEvaluationError.h"
#include "names/NameCheck.h"
#include "names/NearestNames.h"
#include "why/Drawing.h"
#include "why/Why.h"

namespace mmq {

namespace {

bool isDrawn(Format format) { return format == Format::mermaid || format == Format::dot; }

int refuseDrawing() {
    std::cerr << "mmq: Only what a path reaches can be drawn, and this expression has no path of "
                 "objects: try one such as '[ownedAttribute] -> [type]'.\n";
    return EXIT_USAGE;
}

/// Evaluates one expression on objects of one model, one after the other.
class Evaluation {
public:
    Evaluation(const RepositoryModel& model, const ExpressionText& text,
               const CompiledExpression& expression, const Options& options, ResultWriter& writer,
               EvaluationMessages& messages)
        : model_(model),
          text_(text),
          expression_(expression),
          options_(options),
          writer_(writer),
          messages_(messages),
          context_(model),
          budget_(options),
          drawing_(model) {}

    /// An object that fails is reported, and the others are gone on with.
    void run(MMObject object) {
        try {
            context_.setLimits(budget_.next());
            if (isDrawn(options_.format)) {
                draw(object);
            } else if (expression_.value) {
                writeValue(object, expression_.value->apply(context_, object));
            } else {
                const std::vector<MMObject> result =
                    expression_.collection->apply(context_, object);
                writer_.writeCollection(object, result, why(object));
            }
        } catch (const MMEvaluationError& error) {
            hasFailed_ = true;
            showFailure(object, error);
        }
    }

    /// Writes the drawing, if one was asked for; false where there was nothing to draw.
    bool writeDrawing() const {
        if (isDrawn(options_.format) && (hasPath_ || hasFailed_)) {
            std::cout << (options_.format == Format::dot ? drawing_.dot() : drawing_.mermaid());
        }
        return hasPath_ || hasFailed_ || !isDrawn(options_.format);
    }

    int exitStatus() const {
        if (hasFailed_) {
            return EXIT_EVALUATION;
        }
        return hasFalse_ && options_.failsOnFalse ? EXIT_FINDINGS : EXIT_DONE;
    }

private:
    // What paths reached goes into one drawing, which is written in the end.
    void draw(MMObject object) {
        const std::vector<MMObject> result = expression_.collection->apply(context_, object);
        context_.setLimits(budget_.next());
        const Reach reach = reachOf(expression_, context_, object);
        hasPath_ = hasPath_ || reach.hasPath;
        drawing_.add(reach, result);
    }

    // Programs that read results find the sentence there.
    void showFailure(MMObject object, const MMEvaluationError& error) {
        if (options_.format != Format::json) {
            std::string buffer;
            std::cout << std::flush;
            messages_.show(std::string(model_.uid(object, buffer)), error);
        }
        writer_.writeError(object, error.what(), why(object));
    }

    // The evidence in the form of the output; empty where it is not asked for.
    std::string why(MMObject object) {
        if (!options_.explains) {
            return {};
        }
        context_.setLimits(budget_.next());
        const Evidence evidence = explain(expression_, context_, object);
        return options_.format == Format::json ? evidenceJson(evidence, text_, model_)
                                               : evidenceText(evidence, text_, model_, "    ");
    }

    void writeValue(MMObject object, const MMValue& value) {
        hasFalse_ = hasFalse_ || (value.getKind() == MMValue::Kind::boolean && !value.getBoolean());
        writer_.writeValue(object, value, why(object));
    }

    const RepositoryModel& model_;
    const ExpressionText& text_;
    const CompiledExpression& expression_;
    const Options& options_;
    ResultWriter& writer_;
    EvaluationMessages& messages_;
    MMEvaluationContext context_;
    EvaluationBudget budget_;
    Drawing drawing_;
    bool hasPath_ = false;
    bool hasFailed_ = false;
    bool hasFalse_ = false;
};

// The objects that the options choose; empty, after a sentence, where there are none to choose.
std::vector<MMObject> chooseObjects(const RepositoryModel& model, const Options& options) {
    if (!options.onClass.empty()) {
        const MMObjectRange range = model.instances(options.onClass);
        return {range.begin(), range.end()};
    }
    const MMObject object = options.uid.empty() ? model.root(0) : model.find(options.uid);
    return object != mmNoObject ? std::vector<MMObject>{object} : std::vector<MMObject>();
}

std::string noObjectSentence(const Options& options) {
    if (!options.onClass.empty()) {
        return "has no object of the class " + options.onClass + ".";
    }
    return options.uid.empty() ? "has no object."
                               : "has no object with the uid " + options.uid + ".";
}

std::string nearestClasses(const RepositoryModel& model, const std::string& name) {
    std::vector<std::string> names;
    for (const ClassSummary& summary : model.classes()) {
        names.emplace_back(summary.name);
    }
    return didYouMean(nearestNames(name, names), "", "");
}

// All objects that an expression is evaluated on are of one class.
bool checkNames(const CompiledExpression& expression, const RepositoryModel& model, MMObject object,
                Messages& messages) {
    NameVocabulary vocabulary;
    vocabulary.addModel(model);
    const ClassSet classes = vocabulary.findClasses({std::string(model.className(object))});
    return showFindings(checkNames(expression, vocabulary, classes).findings, messages);
}

}  // namespace

int runEval(const Options& options) {
    const ExpressionText text = readExpression(options);
    Messages messages(text, options, options.isVerbose);
    const CompiledExpression expression = compile(text, options.as, messages);
    if (!expression) {
        return EXIT_EXPRESSION;
    }
    if (isDrawn(options.format) && !expression.collection) {
        return refuseDrawing();
    }
    const std::unique_ptr<RepositoryModel> model = loadModel(options);
    const std::vector<MMObject> objects = chooseObjects(*model, options);
    if (objects.empty()) {
        std::cerr << "mmq: " << options.modelFile << ' ' << noObjectSentence(options) << '\n';
        showAdvice(nearestClasses(*model, options.onClass));
        return EXIT_USAGE;
    }
    if (!options.allowsUnknownNames && !checkNames(expression, *model, objects[0], messages)) {
        return EXIT_EXPRESSION;
    }
    ResultWriter writer(*model, options.format, options.onClass.empty());
    EvaluationMessages failures(text, *expression.map, options);
    Evaluation evaluation(*model, text, expression, options, writer, failures);
    for (const MMObject object : objects) {
        evaluation.run(object);
    }
    if (!evaluation.writeDrawing()) {
        return refuseDrawing();
    }
    return evaluation.exitStatus();
}

}  // namespace mmq
