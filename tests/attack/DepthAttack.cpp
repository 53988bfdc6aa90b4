// Expressions of many shapes, as deep as they may be, deeper, and very much deeper: each is right,
// or refused with a sentence. Each runs through all stages in a process of its own, on a thread
// with a stack of 8 MiB and of 1 MiB, so that a crash is a failed line. ATTACK_ALL=1 adds depth
// 1,000,000 and texts of 10 MB, whose processor time and memory are compared with those of 1 MB.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "api/ExprParser.h"
#include "ast/ASTPrintVisitor.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"
#include "fliodram/StructModel.h"
#include "namespace/CreateNameSpaceVisitor.h"
#include "namespace/TopLevelEnvironment.h"
#include "parser/SyntaxParser.h"
#include "support/ParseException.h"
#include "typecheck/ASTTypeCheckVisitor.h"

namespace {

// How deep a shape may be.
constexpr std::size_t levels = 1000;
constexpr std::size_t unlimited = 0;
// How many of them may be taken by what is around a shape.
constexpr std::size_t around = 8;

/// A construct that holds itself: `begin` and `end`, n times around `inner`, between `before` and
/// `after`.
struct Shape {
    std::string name;
    std::string before, begin, inner, end, after;
    /// What the expression is on the object n of the model below.
    std::function<std::string(std::size_t)> expected;
    /// The levels that each repetition costs; unlimited for a loop.
    std::size_t cost = 1;

    std::string text(std::size_t depth, bool isClosed = true) const {
        std::string text = before;
        for (std::size_t i = 0; i < depth; ++i) {
            text += begin;
        }
        text += inner;
        for (std::size_t i = 0; isClosed && i < depth; ++i) {
            text += end;
        }
        return text + after;
    }
};

std::function<std::string(std::size_t)> always(const std::string& value) {
    return [value](std::size_t /*depth*/) { return value; };
}
std::string alternating(std::size_t depth, const char* even, const char* odd) {
    return depth % 2 == 0 ? even : odd;
}

// The object has one link a, to itself, and one link b, to another whose a leads back.
const std::vector<Shape>& shapes() {
    static const std::vector<Shape> table = {
        {"parentheses", "", "(", "7", ")", "", always("7")},
        {"not", "", "not ", "true", "", "", [](auto n) { return alternating(n, "true", "false"); }},
        {"minus", "", "- ", "1", "", "", [](auto n) { return alternating(n, "1", "-1"); }},
        {"sum", "", "", "1", " + 1", "", [](auto n) { return std::to_string(n + 1); }, unlimited},
        {"difference", "", "", "1", " - 1", "",
         [](auto n) { return std::to_string(1 - static_cast<long>(n)); }, unlimited},
        {"product", "", "", "7", " * 1", "", always("7"), unlimited},
        {"quotient", "", "", "7", " / 1", "", always("7"), unlimited},
        {"and", "", "", "true", " and true", "", always("true"), unlimited},
        {"or", "", "", "false", " or false", "", always("false"), unlimited},
        {"mixed chain", "", "", "true", " and true or false", "", always("true"), unlimited},
        {"joined texts", "size ([a]) = 1 and find (`^.`, ", "", "\"x\"", " + \"\"", ") = \"x\"",
         always("true"), unlimited},
        {"implies", "", "true implies ", "false", "", "", always("false")},
        {"implies to the left", "", "(", "true", " implies true)", "", always("true")},
        {"sum to the right", "", "1 + (", "1", ")", "",
         [](auto n) { return std::to_string(n + 1); }},
        {"product to the right", "", "1 * (", "7", ")", "", always("7")},
        {"difference to the right", "", "1 - (", "1", ")", "",
         [](auto n) { return alternating(n, "1", "0"); }},
        {"quotient to the right", "", "8 / (", "1", ")", "",
         [](auto n) { return alternating(n, "1", "8"); }},
        {"and to the right", "", "true and (", "false", ")", "", always("false")},
        {"or to the right", "", "false or (", "true", ")", "", always("true")},
        {"= to the left", "", "(", "true", " = true)", "", always("true")},
        {"= to the right", "", "(true = ", "true", ")", "", always("true")},
        {"<> to the left", "", "(", "true", " <> false)", "", always("true")},
        {"<> to the right", "", "(false <> ", "true", ")", "", always("true")},
        {"< to the left", "", "integer (", "true", ") < 2", "", always("true"), 2},
        {"< to the right", "", "0 < integer (", "true", ")", "", always("true"), 2},
        {"<= to the left", "", "integer (", "true", ") <= 1", "", always("true"), 2},
        {"<= to the right", "", "1 <= integer (", "true", ")", "", always("true"), 2},
        {"> to the left", "", "integer (", "true", ") > 0", "", always("true"), 2},
        {"> to the right", "", "2 > integer (", "true", ")", "", always("true"), 2},
        {">= to the left", "", "integer (", "true", ") >= 1", "", always("true"), 2},
        {">= to the right", "", "1 >= integer (", "true", ")", "", always("true"), 2},
        {"~= to the left", "", "string (", "true", ") ~= \"^true$\"", "", always("true"), 2},
        {"~= to the right", "", "\"true\" ~= string (", "true", ")", "", always("true"), 2},
        {"~<> to the left", "", "string (", "true", ") ~<> \"x\"", "", always("true"), 2},
        {"~<> to the right", "", "\"x\" ~<> string (", "true", ")", "", always("true"), 2},
        {"alternation", "", "(\"\" |=> ", "\"x\"", ")", "", always("x")},
        {"alternation to the left", "", "(", "\"x\"", " |=> \"y\")", "", always("x")},
        {"let in a value", "", "let x = ", "1", " in x", "", always("1")},
        {"let in a body", "", "let x = 1 in ", "x", "", "", always("1")},
        {"if in a test", "", "if ", "true", " then true else false", "", always("true")},
        {"if in a then", "", "if true then ", "1", " else 2", "", always("1")},
        {"if in an else", "", "if false then 2 else ", "1", "", "", always("1")},
        {"for_all", "", "for_all x in [a] => ", "$name = \"n0\"", "", "", always("true")},
        {"there_exists", "", "there_exists x in [b] => ", "true", "", "",
         [](auto n) { return n < 2 ? "true" : "false"; }},
        {"map", "", "concat map {", "$name", "} over [a]", "", always("n0"), 2},
        {"filter", "string size (", "filter {true} over ", "[a]", "", ")", always("1")},
        {"filter condition", "", "0 < size filter {", "true", "} over [a]", "", always("true"), 2},
        {"traverse", "string size (", "traverse {[a]} over ", "[a]", "", ")", always("1")},
        {"traverse path", "string size (", "traverse {", "[a]", "} over [a]", ")", always("1")},
        {"sort key", "", "size sort {", "1", "} over [a]", "", always("1"), 2},
        {"tuple", "", "alternation (\"\", ", "\"x\"", ")", "", always("x"), 2},
        {"application", "string size (", "unique (", "[a]", ")", ")", always("1"), 2},
        {"application bare", "string size (", "reverse ", "[a]", "", ")", always("1")},
        {"attribute of", "", "string ", "$name", "", "", always("n0")},
        {"steps", "string size (this", "", "", " -> [a]", ")",
         [](auto n) { return n == 0 ? "" : "1"; }},
        {"marked steps", "string size (this -> [b]", "", "", " -> ^[a]", ")", always("1")},
        {"groups", "string size (this -> [a]", " -> ([a]", "", ")", ")", always("1"), 2},
        {"groups after groups", "string size (this", "", "", " -> ([a]; [a])", ")", always("1"), 3},
        {"conditions", "string size (", "[a]{0 < size ", "[a]", "}", ")", always("1"), 3},
        {"long text", "\"", "", "", "x", "\" ~= \"^x*$\"", always("true"), unlimited},
        {"long comment", "(* ", "", "", "x", " *) 7", always("7"), unlimited},
        {"blanks", "7", "", "", " \n", "", always("7"), unlimited},
    };
    return table;
}

/// Two objects, as the shapes need them.
class SmallCycle {
public:
    SmallCycle() : things_(2), model_(things_) {
        things_[0].kind = things_[1].kind = std::string(1, 'N');
        things_[0].attributes["name"] = std::string("n0");
        things_[1].attributes["name"] = std::string("n1");
        things_[0].associations = {{"a", {things_[0].handle()}}, {"b", {things_[1].handle()}}};
        things_[1].associations = {{"a", {things_[0].handle()}}};
    }
    const MMModel& model() const { return model_; }
    MMObject object() const { return things_[0].handle(); }

private:
    std::vector<Thing> things_;
    StructModel model_;
};

/// Accepts every type.
class AnyType : public TypeRequirement {
public:
    bool check(const OrvCountedPtr<TypeExpression>& /*type*/) const override { return true; }
    std::string text() const override { return "{any}"; }
};

/// Keeps the last error.
class ErrorDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int line, int column, const std::string& /*source*/,
                     const std::string& message, MessageSeverity severity, bool /*flag*/) override {
        if (severity == Error) {
            error = message;
            isPlaced = line > 0 && column > 0;
        }
    }
    std::string error;
    bool isPlaced = false;
};

/// Formats what is printed, and keeps nothing of it.
class DiscardingBuffer : public std::streambuf {
protected:
    int_type overflow(int_type byte) override { return traits_type::not_eof(byte); }
    std::streamsize xsputn(const char* /*bytes*/, std::streamsize count) override { return count; }
};

// Steps that follow a group are printed below each of its alternatives, so that many groups after
// each other make a tree that is too large to print.
bool isPrintable(const std::string& text) { return std::count(text.begin(), text.end(), ';') < 12; }

// The stages one by one, with the printers of the tree and of the scopes.
void runStages(const std::string& text) {
    ErrorDialogs dialogs;
    DiscardingBuffer buffer;
    std::ostream silent(&buffer);
    const auto root = SyntaxParser::parse(dialogs, text.c_str(), silent);
    if (root) {
        CreateNameSpaceVisitor scopes(TopLevelEnvironment::instance()->getScope());
        root->accept(scopes);
        NameSpacePrinter(silent).print(*scopes.getNameSpace());
        const AnyType anyType;
        ASTTypeCheckVisitor checker(dialogs, scopes.getNameSpace(), anyType);
        root->accept(checker);
        if (isPrintable(text)) {
            ASTPrintVisitor printer(silent);
            root->accept(printer);
        }
    }
}

// What the expression is; "!" and the sentence of the error that its compilation ends in.
std::string outcomeOf(const std::string& text) {
    try {
        runStages(text);
    } catch (const ParseException& exception) {
        if (exception.getLine() < 1) {
            return "an exception without a place";
        }
    }
    ErrorDialogs dialogs;
    const auto expression = ExprParser::parseAssociatedAttribute(dialogs, text);
    if (!expression) {
        return (dialogs.isPlaced ? "!" : "unplaced: ") + dialogs.error;
    }
    (void)printedTarget(*expression);
    const SmallCycle cycle;
    MMEvaluationContext context(cycle.model());
    try {
        return std::string(expression->apply(context, cycle.object()).asString().view());
    } catch (const MMEvaluationError& error) {
        return "evaluation: " + std::string(error.what());
    }
}

double processorSeconds() {
    return static_cast<double>(std::clock()) / static_cast<double>(CLOCKS_PER_SEC);
}

struct Task {
    const std::string* text;
    std::string outcome;
    double seconds = 0;  ///< of processor time
};

void* runTask(void* argument) {
    auto* const task = static_cast<Task*>(argument);
    const double start = processorSeconds();
    task->outcome = outcomeOf(*task->text);
    task->seconds = processorSeconds() - start;
    return nullptr;
}

void runOnThread(Task& task, std::size_t stackSize) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stackSize);
    pthread_t thread{};
    if (pthread_create(&thread, &attributes, runTask, &task) != 0) {
        _exit(3);
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

/// What a process of its own came to.
struct ChildResult {
    std::string outcome;
    double seconds = 0;  ///< of processor time
    long kilobytes = 0;
};

ChildResult runInChild(const std::string& text, std::size_t stackSize) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return {"no pipe"};
    }
    const pid_t child = fork();
    if (child == 0) {
        alarm(120);
        std::cerr.rdbuf(nullptr);
        Task task{&text, {}};
        runOnThread(task, stackSize);
        const std::string shown = std::to_string(task.seconds) + " " + task.outcome.substr(0, 500);
        _exit(write(ends[1], shown.data(), shown.size()) == static_cast<ssize_t>(shown.size()) ? 0
                                                                                               : 4);
    }
    close(ends[1]);
    ChildResult result;
    std::array<char, 512> buffer{};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;) {
        result.outcome.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    if (WIFSIGNALED(status)) {
        result.outcome = "signal " + std::to_string(WTERMSIG(status));
    } else if (const std::size_t blank = result.outcome.find(' '); blank != std::string::npos) {
        result.seconds = std::stod(result.outcome);
        result.outcome.erase(0, blank + 1);
    }
    result.kilobytes = usage.ru_maxrss;
    return result;
}

const std::string tooDeepEvaluation = "evaluation: The evaluation is nested too deeply.";

bool isRefusal(const std::string& outcome) {
    return outcome == "!Expression is nested too deeply." || outcome == tooDeepEvaluation;
}

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

bool isAll() { return std::getenv("ATTACK_ALL") != nullptr; }

#ifdef DEPTH_IS_INSTRUMENTED
constexpr bool isInstrumented = true;
#else
constexpr bool isInstrumented = false;
#endif

#if defined(NDEBUG) && !defined(__clang__) && !defined(DEPTH_IS_INSTRUMENTED)
constexpr bool isStackAmple = true;
#else
constexpr bool isStackAmple = false;  // 1,000 levels need not fit the stack
#endif

// What compiles or evaluates has a stack of at least so much, where the code is optimised.
constexpr std::size_t smallestStack = (isStackAmple ? 32U : 256U) * 1024U;

// How many levels must be right on a stack, a fraction of what each shape reaches there: on 1 MiB,
// all of them in an optimised build, and 700 in another one.
constexpr std::size_t demandedLevels(std::size_t stackSize) {
    if (stackSize < mebibyte) {
        return isInstrumented ? 2 : 10;
    }
    return isStackAmple ? levels - around : isInstrumented ? 20 : 100;
}

void attack(const Shape& shape, std::size_t depth, std::size_t stackSize) {
    const std::string outcome = runInChild(shape.text(depth), stackSize).outcome;
    const std::string row = shape.name + " " + std::to_string(depth) + " levels, " +
                            std::to_string(stackSize / 1024) + " KiB";
    const std::string expected = shape.expected(depth);
    const bool isLoop = shape.cost == unlimited;
    const bool mustWork = isLoop || depth * shape.cost <= demandedLevels(stackSize);
    const bool mustFail = !isLoop && depth * shape.cost > levels;
    const bool isRight = outcome == expected && !mustFail;
    EXPECT_TRUE(isRight || (!mustWork && isRefusal(outcome)))
        << row << ": " << outcome << " where " << expected << " is right";
}

TEST(Depth, EveryShapeIsRightOrRefused) {
    for (const Shape& shape : shapes()) {
        const std::size_t cost = std::max<std::size_t>(shape.cost, 1);
        std::vector<std::size_t> depths = {1, 2, 10, 100'000, isAll() ? 1'000'000U : 10'000U};
        depths.push_back(demandedLevels(mebibyte) / cost);
        const std::size_t deepest = levels / cost;
        for (std::size_t depth = deepest - around; depth <= deepest + 1; ++depth) {
            depths.push_back(depth);
        }
        for (const std::size_t stackSize : {8 * mebibyte, mebibyte}) {
            for (const std::size_t depth : depths) {
                attack(shape, depth, stackSize);
            }
        }
    }
}

TEST(Depth, TheSmallestStackIsEnoughForWhatIsNotNested) {
    for (const Shape& shape : shapes()) {
        for (const std::size_t depth : {2U, 10U, 100U, 1001U, 100'000U}) {
            attack(shape, depth, smallestStack);
        }
        const std::string outcome = runInChild(shape.text(1), smallestStack).outcome;
        EXPECT_EQ(outcome, shape.expected(1)) << shape.name;
    }
}

// A text that breaks off within its shape: before what is innermost, in the last operator of a
// chain, or without the ends. Empty for a shape that has nothing to break off.
std::string unclosed(const Shape& shape, std::size_t depth) {
    Shape begun = shape;
    if (shape.begin.empty()) {
        const std::size_t operand = shape.end.rfind(' ');
        if (operand == std::string::npos || shape.end[operand + 1] == '\n') {
            return "";
        }
        begun.after = shape.end.substr(0, operand) + shape.after;
    } else if (shape.end.empty()) {
        begun.inner.clear();
    } else {
        return shape.text(depth, false);
    }
    return begun.text(depth);
}

// Texts, names, patterns and comments without an end, of so many characters or escapes.
std::vector<std::string> unclosedQuotes(std::size_t depth) {
    std::vector<std::string> texts;
    for (const char* const quote : {"\"", "[", "`", "(*"}) {
        for (const char* const part : {"x", "\\n", "(* ", "\xFF"}) {
            Shape shape;
            shape.before = shape.name = quote;
            shape.end = part;
            texts.push_back(shape.text(depth));
        }
    }
    return texts;
}

TEST(Depth, UnclosedShapesHaveAnError) {
    std::vector<std::size_t> depths = {3, 1000, 1001, 100'000};
    if (isAll()) {
        depths.push_back(1'000'000);
    }
    for (const std::size_t depth : depths) {
        std::vector<std::string> texts = unclosedQuotes(depth);
        for (const Shape& shape : shapes()) {
            texts.push_back(unclosed(shape, depth));
        }
        EXPECT_LE(std::count(texts.begin(), texts.end(), ""), 3);
        std::erase(texts, "");
        for (const std::string& text : texts) {
            for (const std::size_t stackSize : {8 * mebibyte, mebibyte}) {
                const std::string outcome = runInChild(text, stackSize).outcome;
                EXPECT_EQ(outcome.substr(0, 1), "!")
                    << text.substr(0, 100) << " " << depth << ": " << outcome;
            }
        }
    }
}

// A condition that leads to itself ends although the stack would take it much further.
TEST(Depth, EvaluationsLeaveMostOfALargeStack) {
    const ChildResult result = runInChild("size (l:[a]{size @l = 0})", 1024 * mebibyte);
    EXPECT_EQ(result.outcome, tooDeepEvaluation);
    EXPECT_LT(result.kilobytes, isStackAmple ? 150'000 : 600'000);
}

constexpr double mostGrowth = 15;

bool hasGrownTooMuch(const ChildResult& large, const ChildResult& small) {
    return large.seconds >= mostGrowth * small.seconds + 0.05;
}

// What a text of so many MiB costs a process that compiles nothing else; of short runs, the mean of
// several processes, since memory that was used before costs less.
ChildResult costOf(const Shape& shape, std::size_t mebibytes) {
    constexpr double leastSeconds = 0.3;
    constexpr int mostRuns = 50;
    const std::size_t unit = shape.begin.size() + shape.end.size();
    const std::string text = shape.text(mebibytes * mebibyte / unit);
    ChildResult cost = runInChild(text, 8 * mebibyte);
    double seconds = cost.seconds;
    int runs = 1;
    for (; seconds < leastSeconds && runs < mostRuns; ++runs) {
        seconds += runInChild(text, 8 * mebibyte).seconds;
    }
    cost.seconds = seconds / runs;
    return cost;
}

// Time and memory of ten times the text are at most fifteen times as much. What is too much is
// measured again: a system may take eight times as long for memory that nobody used yet as for what
// another process gave back.
TEST(Depth, CostsGrowWithTheText) {
    if (!isAll()) {
        GTEST_SKIP() << "ATTACK_ALL is not set";
    }
    for (const Shape& shape : shapes()) {
        const ChildResult small = costOf(shape, 1);
        ChildResult large = costOf(shape, 10);
        for (int again = 0; again < 2 && hasGrownTooMuch(large, small); ++again) {
            large.seconds = std::min(large.seconds, costOf(shape, 10).seconds);
        }
        std::cout << shape.name << ": " << small.seconds << " s and " << small.kilobytes
                  << " KB for 1 MB, " << large.seconds << " s and " << large.kilobytes
                  << " KB for 10 MB\n";
        EXPECT_GT(small.seconds, 0) << shape.name << ": " << small.outcome;
        EXPECT_FALSE(hasGrownTooMuch(large, small)) << shape.name;
        EXPECT_LT(static_cast<double>(large.kilobytes),
                  mostGrowth * static_cast<double>(small.kilobytes))
            << shape.name;
    }
}

}  // namespace
