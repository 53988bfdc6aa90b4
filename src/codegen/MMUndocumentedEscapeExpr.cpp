#include "codegen/MMUndocumentedEscapeExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMUndocumentedEscapeExpr::MMUndocumentedEscapeExpr(const OrvCyclicPtr<MMValueExpr>& operand)
    : operand_(*this, operand) {}

MMValue MMUndocumentedEscapeExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string buffer;
    const std::string_view text = operand_->evaluateText(context, buffer);
    constexpr std::size_t longestEscape = 4;
    context.countText(0, text.size() * longestEscape);
    std::string escaped;
    for (const char next : text.substr(0, text.find('\0'))) {
        switch (next) {
            case '\t':
                escaped.append("\\t");
                break;
            case '\n':
                escaped.append("\\r\\n");
                break;
            case '"':
                escaped.append("\\\"");
                break;
            case '\\':
                escaped.append("\\\\");
                break;
            default:
                escaped.push_back(next);
        }
    }
    return MMValue(std::move(escaped));
}

void MMUndocumentedEscapeExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUndocumentedEscapeExpr").operand(operand_.get()).end();
}
