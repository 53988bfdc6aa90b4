#include "support/ParseException.h"

ParseException::ParseException(const std::string& message, int line, int column)
    : OrvException(message), line_(line), column_(column) {}

ParseException::~ParseException() = default;
