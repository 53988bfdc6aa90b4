// The exception for a text that ends its own compilation, with the place where it does.
#pragma once

#include <string>

#include "support/OrvException.h"

/// An error in the text of an expression that ends the compilation at once.
///
/// The driver shows it to the user at its position: line and column, both counted from 1.
class __attribute__((visibility("default"))) ParseException : public OrvException {
public:
    ParseException(const std::string& message, int line, int column);
    ~ParseException() override;

    int getLine() const { return line_; }
    int getColumn() const { return column_; }

private:
    int line_;
    int column_;
};
