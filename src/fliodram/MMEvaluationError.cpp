#include "fliodram/MMEvaluationError.h"

MMEvaluationError::MMEvaluationError(Kind kind, const std::string& message)
    : OrvException(message), kind_(kind) {}

MMEvaluationError::~MMEvaluationError() = default;

void throwEvaluationFailure(const std::string& message) {
    throwLogged(MMEvaluationError(MMEvaluationError::Kind::failure, message));
}
