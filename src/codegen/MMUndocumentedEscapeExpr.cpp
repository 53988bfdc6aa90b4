#include "codegen/MMUndocumentedEscapeExpr.h"

#include "fliodram/MMTargetPrinter.h"

MMUndocumentedEscapeExpr::MMUndocumentedEscapeExpr(const OrvCyclicPtr<MMValueExpr>& operand)
    : operand_(*this, operand) {}

MMValue MMUndocumentedEscapeExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    const OrvString text = operand_->evaluate(context).asString();
    constexpr std::size_t longestEscape = 4;
    context.countText(0, text.length() * longestEscape);
    std::string escaped;
    for (const char* next = text.data(); *next != '\0'; ++next) {
        switch (*next) {
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
                escaped.push_back(*next);
        }
    }
    return MMValue(std::move(escaped));
}

void MMUndocumentedEscapeExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMUndocumentedEscapeExpr").operand(operand_.get()).end();
}
