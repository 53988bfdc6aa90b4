#include "lsp/Diagnostics.h"

#include <utility>

namespace mmq {

namespace {

constexpr std::size_t mostKept = 200;

}  // namespace

void DiagnosticList::write(const MessagePlace& place, const std::string& source,
                           const std::string& message, ExprParserDialogs::MessageSeverity severity,
                           bool /*flag*/) {
    if (++count_ <= mostKept) {
        diagnostics_.push_back({place.offset + shift_, place.endOffset + shift_,
                                severity == ExprParserDialogs::Error,
                                source == messageSource ? "" : source, message});
    }
}

void DiagnosticList::writeHint(const MessagePlace& /*place*/, const std::string& hint) {
    if (count_ > 0 && count_ <= mostKept) {
        diagnostics_.back().message.append("\n").append(hint);
    }
}

std::vector<Diagnostic> DiagnosticList::take() {
    if (count_ > mostKept) {
        diagnostics_.back().message.append("\nThere are " + std::to_string(count_ - mostKept) +
                                           " more messages.");
    }
    return std::exchange(diagnostics_, {});
}

}  // namespace mmq
