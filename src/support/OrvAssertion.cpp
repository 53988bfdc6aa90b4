#include "support/OrvAssertion.h"

OrvAssertion::OrvAssertion(const std::string& condition, const std::string& file, int line,
                           const std::string& message)
    : OrvException(message), condition_(condition), file_(file), line_(line) {}

OrvAssertion::~OrvAssertion() = default;
