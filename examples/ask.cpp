// ask MODEL EXPRESSION: prints the value of an expression on the root of a model. The shortest
// program that embeds the library.
#include <chrono>
#include <iostream>

#include "api/ExprParser.h"
#include "api/ExprParserDialogs.h"
#include "fliodram/MMEvaluationContext.h"
#include "repository/ModelReader.h"

// Shows the errors of a compilation.
class Messages : public ExprParserDialogs {
    bool askYesNo(const std::string&, bool defaultAnswer) override { return defaultAnswer; }
    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool) override {
        if (severity == MessageSeverity::Error) {
            std::cerr << line << ":" << column << ": " << source << ": " << message << "\n";
        }
    }
};

int main(int count, char** arguments) try {
    if (count != 3) {
        std::cerr << "ask MODEL EXPRESSION\n";
        return 2;
    }
    const auto model = readModel(arguments[1]);
    Messages messages;
    const auto question = ExprParser::parseAssociatedAttribute(messages, arguments[2]);
    if (!question) {
        return 3;
    }
    MMEvaluationLimits limits;
    limits.steps = 10'000'000;
    limits.time = std::chrono::milliseconds(200);
    MMEvaluationContext context(*model, limits);
    std::cout << question->apply(context, model->root(0)).asString().view() << "\n";
} catch (const std::exception& exception) {
    std::cerr << exception.what() << "\n";
    return 4;
}
