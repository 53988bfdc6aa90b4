#include "lint/ErrorLimit.h"

namespace mmq {

void ErrorLimit::write(const MessagePlace& place, const std::string& source,
                       const std::string& message, ExprParserDialogs::MessageSeverity severity,
                       bool flag) {
    const bool isError = severity == ExprParserDialogs::Error;
    if (isError && count_ == mostErrorsShown) {
        next_ = place;
    } else if (!isFull()) {
        sink_.write(place, source, message, severity, flag);
    }
    count_ += isError ? 1 : 0;
}

void ErrorLimit::writeHint(const MessagePlace& place, const std::string& hint) {
    if (!isFull()) {
        sink_.writeHint(place, hint);
    }
}

void ErrorLimit::finish(bool isComplete) {
    if (isFull()) {
        const std::string count = isComplete ? std::to_string(count_) : "more";
        sink_.write(next_, messageSource,
                    "There are " + count + " errors like these; the first " +
                        std::to_string(mostErrorsShown) + " are shown.",
                    ExprParserDialogs::Error, false);
    }
}

}  // namespace mmq
