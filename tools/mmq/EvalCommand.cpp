// mmq eval: evaluates an expression on one object of a model, or on all objects of a class.
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Compilation.h"
#include "Evaluation.h"
#include "ExitStatus.h"
#include "Jobs.h"
#include "ModelLoading.h"
#include "ModelNames.h"
#include "names/NameCheck.h"
#include "names/NearestNames.h"

namespace mmq {

namespace {

int refuseDrawing() {
    std::cerr << "mmq: Only what a path reaches can be drawn, and this expression has no path of "
                 "objects: try one such as '[ownedAttribute] -> [type]'.\n";
    return EXIT_USAGE;
}

/// The evaluation on all objects that were chosen, divided among threads.
class EvaluationRun {
public:
    /// Borrows everything; the expression is for the first thread.
    EvaluationRun(const RepositoryModel& model, const ExpressionText& text,
                  const CompiledExpression& expression, const Options& options)
        : model_(model),
          text_(text),
          options_(options),
          budget_(options),
          failures_(text, *expression.map, options),
          workers_(isDrawn(options.format) ? 1 : jobsFor(options.jobs)) {
        workers_[0].begin(*this, expression);
    }

    /// Writes what the objects yield, in their order.
    void run(const std::vector<MMObject>& objects) {
        ResultWriter(model_, options_.format, options_.onClass.empty()).writeHeader();
        InOrder<EvaluationResults> output([this](const EvaluationResults& part) { write(part); });
        const std::size_t size = blockSize(objects.size(), workers_.size());
        const std::size_t count = (objects.size() + size - 1) / size;
        runBlocks(workers_.size(), count, [&](std::size_t worker, std::size_t block) {
            const MMObject* const first = objects.data() + block * size;
            const MMObject* const last = first + std::min(size, objects.size() - block * size);
            output.put(block, workers_[worker].evaluation(*this).run({first, last, true}));
        });
    }

    /// Writes the drawing, if one was asked for; false where there was nothing to draw.
    bool writeDrawing() {
        if (!isDrawn(options_.format)) {
            return true;
        }
        const Evaluation& evaluation = workers_[0].evaluation(*this);
        if (evaluation.hasPath() || hasFailed_) {
            const Drawing& drawing = evaluation.drawing();
            std::cout << (options_.format == Format::dot ? drawing.dot() : drawing.mermaid());
        }
        return evaluation.hasPath() || hasFailed_;
    }

    int exitStatus() const {
        if (hasFailed_) {
            return EXIT_EVALUATION;
        }
        return hasFalse_ && options_.failsOnFalse ? EXIT_FINDINGS : EXIT_DONE;
    }

private:
    /// What a thread evaluates with. Any but the first compiles the expression for itself, when it
    /// has something to do.
    class Worker {
    public:
        void begin(const EvaluationRun& run, const CompiledExpression& expression) {
            evaluation_ = std::make_unique<Evaluation>(run.model_, run.text_, expression,
                                                       run.options_, run.budget_);
        }

        Evaluation& evaluation(const EvaluationRun& run) {
            if (evaluation_ == nullptr) {
                expression_ = compileAgain(run.text_, run.options_.as);
                begin(run, expression_);
            }
            return *evaluation_;
        }

    private:
        CompiledExpression expression_;
        std::unique_ptr<Evaluation> evaluation_;
    };

    void write(const EvaluationResults& results) {
        if (isCut_) {
            return;  // an object before these was told to be the last
        }
        isCut_ = results.isCut;
        const std::string_view text = results.text;
        std::size_t written = 0;
        for (const auto& [position, failure] : results.failures) {
            std::cout << text.substr(written, position - written) << std::flush;
            failures_.show(failure);
            written = position;
        }
        std::cout << text.substr(written);
        hasFailed_ = hasFailed_ || results.hasFailed;
        hasFalse_ = hasFalse_ || results.hasFalse;
    }

    const RepositoryModel& model_;
    const ExpressionText& text_;
    const Options& options_;
    EvaluationBudget budget_;
    EvaluationMessages failures_;
    std::vector<Worker> workers_;
    bool hasFailed_ = false;
    bool hasFalse_ = false;
    bool isCut_ = false;
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

void refuseObjects(const RepositoryModel& model, const Options& options) {
    NameVocabulary vocabulary;
    vocabulary.addModel(model);
    if (!options.onClass.empty() && vocabulary.findClass(options.onClass)) {
        std::cerr << "mmq: The class " << options.onClass << " is known, but " << options.modelFile
                  << " has no object of it.\n";
        return;
    }
    std::cerr << "mmq: " << options.modelFile << ' ' << noObjectSentence(options) << '\n';
    showAdvice(nearestClasses(model, options.onClass));
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
    NamesOnDemand names(options);
    messages.setNames([&names] { return names.find(); });
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
        refuseObjects(*model, options);
        return EXIT_USAGE;
    }
    if (!options.allowsUnknownNames && !checkNames(expression, *model, objects[0], messages)) {
        return EXIT_EXPRESSION;
    }
    EvaluationRun run(*model, text, expression, options);
    run.run(objects);
    return run.writeDrawing() ? run.exitStatus() : refuseDrawing();
}

}  // namespace mmq
