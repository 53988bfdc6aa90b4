#include "repl/Session.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <iostream>

#include "Counted.h"
#include "EvaluationBudget.h"
#include "EvaluationMessages.h"
#include "ExitStatus.h"
#include "ResultWriter.h"
#include "assist/PartialText.h"
#include "fliodram/MMTargetPrinter.h"
#include "names/NameCheck.h"
#include "names/NearestNames.h"
#include "repl/ModelDescription.h"
#include "types/TypeExprPrintVisitor.h"
#include "why/Why.h"

namespace mmq {

namespace {

using Clock = std::chrono::steady_clock;

std::string milliseconds(Clock::duration duration) {
    constexpr int decimals = 2;
    const double count = std::chrono::duration<double, std::milli>(duration).count();
    std::string text(64, '\0');
    const auto end = std::to_chars(text.data(), text.data() + text.size(), count,
                                   std::chars_format::fixed, decimals);
    text.resize(static_cast<std::size_t>(end.ptr - text.data()));
    return text + " ms";
}

// A name that is written as expressions write it.
std::string withoutQuotes(const std::string& name) {
    const bool isQuoted = name.size() > 1 && name.front() == '"' && name.back() == '"';
    return isQuoted ? name.substr(1, name.size() - 2) : name;
}

constexpr const char* noModel = "There is no model: begin with mmq repl --model FILE.";

void warn(const std::string& sentence) { std::cerr << sentence << '\n'; }

}  // namespace

Session::Session(const Options& options, const std::atomic<bool>& isInterrupted)
    : options_(options), isInterrupted_(isInterrupted), names_(options) {
    if (names_.model() != nullptr && names_.model()->root(0) != mmNoObject) {
        objects_ = {names_.model()->root(0)};
    }
}

std::string Session::greeting() const {
    const std::string model =
        names_.model() == nullptr
            ? "No model: expressions are compiled, and their types shown."
            : options_.modelFile + ": " + counted(names_.model()->objectCount(), "object") + ".";
    return model + " :help shows what there is.";
}

NameSource Session::names() const {
    NameSource source{names_.vocabulary(), {}};
    if (names_.model() != nullptr && !objects_.empty()) {
        source.classesOfThis = source.vocabulary->findClasses(
            {std::string(names_.model()->className(objects_.front()))});
    }
    return source;
}

void Session::refuse(const std::string& sentence, const std::string& advice, int status) {
    warn(advice.empty() ? sentence : sentence + " " + advice);
    fail(status);
}

// ---------------------------------------------------------------- inputs

bool Session::isUnfinished(const std::string& input) {
    const ReplInput parts = readInput(input);
    const ReplCommand* const command = findCommand(parts.command);
    const bool hasExpression =
        parts.command.empty() || (command != nullptr && command->takesExpression());
    return hasExpression && !parts.argument.empty() && mmq::isUnfinished(parts.argument);
}

void Session::run(const std::string& input) {
    const ReplInput parts = readInput(input);
    const ReplCommand* const command = findCommand(parts.command);
    const ReplCommand* const meant =
        parts.command.empty() ? findWithoutColon(parts.argument) : nullptr;
    if (meant != nullptr) {
        refuse("Commands begin with a colon: " + meant->name + ".", {}, EXIT_USAGE);
    } else if (parts.command.empty()) {
        evaluate(parts.argument, showsTimes_, false);
    } else if (command != nullptr) {
        runCommand(*command, parts.argument);
    } else {
        refuse(sentenceForCommand(parts.command), {}, EXIT_USAGE);
    }
}

void Session::runCommand(const ReplCommand& command, const std::string& argument) {
    const bool needsExpression = command.argument == ReplArgument::expression;
    const bool needsClass = command.argument == ReplArgument::className;
    if (argument.empty() && (needsExpression || needsClass)) {
        const char* const missing = needsClass ? "the name of a class." : "an expression.";
        return refuse(command.name + " needs " + missing, {}, EXIT_USAGE);
    }
    if (!argument.empty() && command.argument == ReplArgument::none) {
        return refuse(command.name + " takes nothing behind it.", {}, EXIT_USAGE);
    }
    switch (command.action) {
        case ReplAction::type:
            return showType(argument);
        case ReplAction::target:
            return showTarget(argument);
        case ReplAction::why:
            return evaluateOnModel(argument, showsTimes_, true);
        case ReplAction::classes:
            return showClasses();
        case ReplAction::describe:
            return describe(withoutQuotes(argument));
        case ReplAction::on:
            return choose(withoutQuotes(argument));
        case ReplAction::time:
            return time(argument);
        case ReplAction::help:
            std::cout << replHelp();
            return;
        case ReplAction::quit:
            isOver_ = true;
    }
}

Completion Session::complete(const std::string& input, std::size_t cursor) const {
    const ReplInput parts = readInput(input.substr(0, cursor));
    const ReplCommand* const command = findCommand(parts.command);
    Completion completion;
    if (!parts.command.empty() && parts.argumentOffset == cursor && input.back() != ' ') {
        completion.offset = cursor - parts.command.size();
        for (const ReplCommand& known : replCommands()) {
            completion.items.push_back({known.name, CompletionKind::keyword});
        }
    } else if (parts.command.empty() || (command != nullptr && command->takesExpression())) {
        const std::size_t begin = parts.argumentOffset;
        completion = mmq::complete(input.substr(begin), cursor - begin, names());
        completion.offset += begin;
    } else if (command != nullptr && command->argument != ReplArgument::none) {
        completion = completeClass(parts.argument, names());
        completion.offset += parts.argumentOffset;
    } else {
        completion.offset = cursor;
    }
    return completion;
}

// ---------------------------------------------------------------- expressions

void Session::showType(const std::string& expression) {
    const ExpressionText text(expression);
    Messages messages(text, options_, false);
    messages.setNames([this] { return names_.vocabulary(); });
    const TypePtr type =
        checkStrictly(text, messages) ? analyzeType(text, messages).type : TypePtr();
    if (type && messages.errorCount() == 0) {
        std::cout << printedType(type) << '\n';
    } else {
        fail(EXIT_EXPRESSION);
    }
}

void Session::showTarget(const std::string& expression) {
    const ExpressionText text(expression);
    Messages messages(text, options_, false);
    messages.setNames([this] { return names_.vocabulary(); });
    const CompiledExpression compiled = compile(text, options_.as, messages);
    if (compiled) {
        std::cout << printedTarget(compiled.target()) << '\n';
    } else {
        fail(EXIT_EXPRESSION);
    }
}

bool Session::hasWrongNames(const CompiledExpression& expression, Messages& messages) const {
    if (names_.vocabulary() == nullptr || options_.allowsUnknownNames) {
        return false;
    }
    const NameCheckResult result =
        checkNames(expression, *names_.vocabulary(), names().classesOfThis);
    return !showFindings(result.findings, messages);
}

void Session::evaluate(const std::string& expression, bool isTimed, bool explains) {
    const auto begin = Clock::now();
    const ExpressionText text(expression);
    Messages messages(text, options_, false);
    messages.setNames([this] { return names_.vocabulary(); });
    const CompiledExpression compiled = compile(text, options_.as, messages);
    if (!compiled || hasWrongNames(compiled, messages)) {
        return fail(EXIT_EXPRESSION);
    }
    if (names_.model() == nullptr) {
        return showType(expression);
    }
    const auto compilationEnd = Clock::now();
    apply(text, compiled, explains);
    if (isTimed) {
        std::cout << milliseconds(compilationEnd - begin) << " to compile, "
                  << milliseconds(Clock::now() - compilationEnd) << " to evaluate on "
                  << counted(objects_.size(), "object") << '\n';
    }
}

void Session::evaluateOnModel(const std::string& expression, bool isTimed, bool explains) {
    if (names_.model() == nullptr) {
        return refuse(noModel, {}, EXIT_USAGE);
    }
    evaluate(expression, isTimed, explains);
}

void Session::apply(const ExpressionText& text, const CompiledExpression& expression,
                    bool explains) {
    const RepositoryModel& model = *names_.model();
    ResultWriter writer(model, Format::text, onClass_.empty());
    EvaluationMessages failures(text, *expression.map, options_);
    MMEvaluationContext context(model);
    const EvaluationBudget budget(options_);
    for (const MMObject object : objects_) {
        if (isInterrupted_) {  // evaluations of few steps do not look
            break;
        }
        try {
            MMEvaluationLimits limits = budget.next();
            limits.isCancelled = &isInterrupted_;
            context.setLimits(limits);
            applyTo(object, expression, context, writer);
            if (explains) {
                limits.time = budget.rest().time;
                context.setLimits(limits);
                const Evidence evidence = explain(expression, context, object);
                std::cout << evidenceText(evidence, text, model, "    ");
            }
        } catch (const MMEvaluationError& error) {
            fail(EXIT_EVALUATION);
            std::string buffer;
            if (error.getKind() != MMEvaluationError::Kind::cancelled) {
                failures.show(std::string(model.uid(object, buffer)), error);
            }
        }
    }
    if (isInterrupted_) {
        warn("Interrupted.");
    }
}

void Session::applyTo(MMObject object, const CompiledExpression& expression,
                      MMEvaluationContext& context, ResultWriter& writer) const {
    if (expression.value) {
        writer.writeValue(object, expression.value->apply(context, object));
        return;
    }
    const std::vector<MMObject> result = expression.collection->apply(context, object);
    writer.writeCollection(object, result);
    if (result.empty() && onClass_.empty()) {
        std::cout << "(no object)\n";
    }
}

void Session::time(const std::string& argument) {
    if (argument != "on" && argument != "off" && !argument.empty()) {
        return evaluateOnModel(argument, true, false);
    }
    showsTimes_ = argument.empty() ? showsTimes_ : argument == "on";
    std::cout << (showsTimes_ ? "Times are shown.\n" : "Times are not shown.\n");
}

// ---------------------------------------------------------------- the model

void Session::describe(const std::string& className) {
    const NameVocabulary* const vocabulary = names_.vocabulary();
    if (vocabulary == nullptr) {
        return refuse(noModel, {}, EXIT_USAGE);
    }
    if (!vocabulary->findClass(className)) {
        return refuse(sentenceForClass(className, *vocabulary),
                      hintForClass(className, *vocabulary), EXIT_USAGE);
    }
    std::cout << describeClass(className, names_);
}

void Session::showClasses() {
    if (names_.vocabulary() == nullptr) {
        return refuse(noModel, {}, EXIT_USAGE);
    }
    std::cout << listClasses(names_);
}

void Session::choose(const std::string& name) {
    const RepositoryModel* const model = names_.model();
    if (model == nullptr) {
        return refuse(noModel, {}, EXIT_USAGE);
    }
    const MMObjectRange instances = model->instances(name);
    const MMObject object = name.empty() ? model->root(0) : model->find(name);
    if (instances.begin() != instances.end()) {
        onClass_ = name;
        objects_ = {instances.begin(), instances.end()};
        std::cout << "On " << counted(objects_.size(), "object") << " of " << name << ".\n";
    } else if (object != mmNoObject) {
        onClass_.clear();
        objects_ = {object};
        std::cout << "On " << (name.empty() ? "the root, " : "") << labelOf(object) << ".\n";
    } else {
        refuse(inQuotes(name) + " is neither a class that has objects nor the uid of an object.",
               didYouMean(nearestNames(name, shownClasses()), "", ""), EXIT_USAGE);
    }
}

std::vector<std::string> Session::shownClasses() const {
    std::vector<std::string> result;
    names_.vocabulary()->shownClasses().forEach(
        [&](ClassNumber number) { result.push_back(names_.vocabulary()->className(number)); });
    return result;
}

std::string Session::labelOf(MMObject object) const {
    const RepositoryModel& model = *names_.model();
    std::string buffer;
    const std::string kind = std::string(model.className(object)) + ", uid ";
    const std::string uid(model.uid(object, buffer));
    const std::string name(model.name(object));
    return (name.empty() ? "an object" : name) + " (" + kind + uid + ")";
}

}  // namespace mmq
