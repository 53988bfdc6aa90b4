// Each built-in function and operator with operands of its types: the bytes choose among awkward
// values, and become texts and patterns themselves. Whatever is chosen compiles, and has a value, a
// sentence or reaches a limit.
#include <algorithm>
#include <array>
#include <string_view>

#include "BuiltIns.h"
#include "CyclicModel.h"
#include "FuzzText.h"
#include "api/ExprParser.h"
#include "fliodram/MMEvaluationError.h"

namespace {

/// Takes an expression from bytes; when they are used up, the simplest.
class ExpressionMaker {
public:
    explicit ExpressionMaker(std::string_view bytes) : bytes_(bytes) {}

    std::string make(char type, int depth) {
        const std::size_t choice = next();
        if (depth == 0 || choice % 4 == 0) {
            return leaf(type);
        }
        std::size_t fitting = 0;
        for (const BuiltIn& builtIn : builtIns) {
            fitting += builtIn.result == type ? 1 : 0;
        }
        if (fitting == 0) {
            return leaf(type);
        }
        std::size_t number = next() % fitting;
        for (const BuiltIn& builtIn : builtIns) {
            if (builtIn.result == type && number-- == 0) {
                return apply(builtIn, depth);
            }
        }
        return leaf(type);
    }

    std::size_t next() {
        if (bytes_.empty()) {
            return 0;
        }
        const auto byte = static_cast<unsigned char>(bytes_.front());
        bytes_.remove_prefix(1);
        return byte;
    }

private:
    std::string apply(const BuiltIn& builtIn, int depth) {
        std::string text(builtIn.text);
        std::size_t at = 0;
        for (const char operand : builtIn.operands) {
            const std::string made = "(" + make(operand, depth - 1) + ")";
            at = text.find('%', at);
            text.replace(at, 1, made);
            at += made.size();
        }
        return text;
    }

    std::string leaf(char type) {
        using Leaves = std::array<std::string_view, 6>;
        static constexpr Leaves booleans = {"true",  "false",         "$v = \"\"",
                                            "1 = 2", "0.0/0.0 = 0.0", "this = current"};
        static constexpr Leaves integers = {"0",  "1",          "- 2147483647 - 1",
                                            "-1", "2147483647", "size [a]"};
        static constexpr Leaves reals = {"0.0", "-0.0", "0.0/0.0", "1.0/0.0", "-1.0/0.0", "1.5"};
        static constexpr Leaves objects = {"this",  "first [c]", "first [a]",
                                           "model", "current",   "first [nothing]"};
        static constexpr Leaves collections = {"[a]",          "[c]",
                                               "all \"Node\"", "x:[a] -> ^[b] -> @x",
                                               "[parent]",     "traverse {[a]} over all \"Leaf\""};
        const std::size_t choice = next() % 6;
        switch (type) {
            case 'B':
                return std::string(booleans[choice]);
            case 'I':
                return std::string(integers[choice]);
            case 'R':
                return std::string(reals[choice]);
            case 'O':
                return std::string(objects[choice]);
            case 'C':
                return std::string(collections[choice]);
            case 'T':
                return "map {$name} over " + std::string(collections[choice]);
            case 'P':
                return "`" + pattern() + "`";
            default:
                return choice < 2 ? std::string(choice == 0 ? "$v" : "$w") : quoted();
        }
    }

    std::string_view take() {
        const std::size_t size = std::min(bytes_.size(), next() % 24);
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(std::min(size, bytes_.size()));
        return taken;
    }

    // A text of the bytes, one time in eight so long that building with it soon reaches a limit.
    std::string quoted() {
        constexpr std::size_t longTimes = 200;
        const std::size_t times = next() % 8 == 1 ? longTimes : 1;
        std::string part;
        for (const char byte : take()) {
            part += byte == '"' || byte == '\\' ? "\\" : "";
            part += byte == '\0' || byte == '\n' || byte == '\r' ? ' ' : byte;
        }
        std::string text;
        for (std::size_t i = 0; i < times; ++i) {
            text += part;
        }
        return "\"" + text + "\"";
    }

    // A pattern that is not well formed does not compile, which is not what is looked for here.
    std::string pattern() {
        std::string text;
        for (const char byte : take()) {
            const bool isMeant = std::string_view("abx.*|^$019 ").find(byte) != std::string::npos;
            text += isMeant ? byte : 'a';
        }
        const bool isRepeated = !text.empty() && (text[0] == '*');
        return "(" + (isRepeated ? "a" + text : text) + ")?";
    }

    std::string_view bytes_;
};

/// Keeps the first error.
class ErrorDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& message, MessageSeverity severity, bool /*flag*/) override {
        error = severity == Error && error.empty() ? message : error;
    }

    std::string error;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ExpressionMaker maker(
        std::string_view(reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 400)));
    const char type = "SBIR"[maker.next() % 4];
    const std::string text = maker.make(type, 3);
    ErrorDialogs dialogs;
    const auto expression = ExprParser::parseAssociatedAttribute(dialogs, text);
    // Two repetitions in a row are the one thing that may be wrong.
    failIf(!expression && dialogs.error.rfind("Regular expression is", 0) != 0);
    const CyclicModel& model = CyclicModel::instance();
    MMEvaluationLimits limits = fuzzLimits();
    limits.steps = 20'000;
    MMEvaluationContext context(model.model(), limits);
    for (std::size_t number = 0; expression && number < 2; ++number) {
        try {
            const MMValue value = expression->apply(context, model.object(number * 13));
            failIf(value.asString().view().size() > fuzzLimits().textSize);
        } catch (const MMEvaluationError& error) {
            failIf(std::string(error.what()).empty());
        }
    }
    return 0;
}
