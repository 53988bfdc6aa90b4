#include "fliodram/MMEvaluationError.h"

#include "foundation/TextOutput.h"

MMEvaluationError::MMEvaluationError(Kind kind, const std::string& message, const MMTarget* target)
    : OrvException(message), kind_(kind), target_(target) {}

MMEvaluationError::~MMEvaluationError() = default;

void MMEvaluationError::setTarget(const MMTarget& target) noexcept {
    target_ = target_ != nullptr ? target_ : &target;
}

void throwEvaluationFailure(const std::string& message, const MMTarget* target) {
    throwLogged(MMEvaluationError(MMEvaluationError::Kind::failure, message, target));
}

void appendQuoted(std::string& sentence, std::string_view text) {
    constexpr std::size_t longest = 40;
    appendJsonString(sentence, text.substr(0, longest));
    sentence += text.size() > longest ? "..." : "";
}
