#include "EvaluationMessages.h"

#include <iostream>

#include "fliodram/MMExpr.h"

namespace mmq {

MessagePlace placeOf(const MMEvaluationError& error, const SourceMap& map,
                     const ExpressionText& text) {
    const SourceSpan* const span =
        error.getTarget() != nullptr ? map.find(*error.getTarget()) : nullptr;
    return span != nullptr ? text.place(span->line, span->column) : MessagePlace();
}

void EvaluationMessages::show(EvaluationFailure failure) {
    MessagePlace& place = failure.place;
    if (place.line == 0 && !writer_.isForPrograms()) {
        std::cerr << "mmq: " << failure.message << '\n';
        return;
    }
    if (place.excerpt == lastExcerpt_) {
        place.excerpt.clear();
    } else {
        lastExcerpt_ = place.excerpt;
    }
    writer_.write(place, messageSource, failure.message, ExprParserDialogs::Error, false);
}

}  // namespace mmq
