// Where the lines of a prompt come from.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "assist/Completion.h"

namespace mmq {

/// Gives the lines that a user types, one after the other.
class LineReader {
public:
    enum class Outcome { line, interrupted, end };

    LineReader() = default;
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    virtual ~LineReader() = default;

    /// Reads a line, without its end; `prompt` stands before it where somebody sees it.
    virtual Outcome read(const std::string& prompt, std::string& line) = 0;
    /// Keeps an input of one line for later.
    virtual void remember(const std::string& input) = 0;
};

/// Finds what may stand at a place of the line that is being typed.
using LineCompleter = std::function<Completion(const std::string& line, std::size_t cursor)>;

/// Reads lines of the standard input as they come, without prompts.
std::unique_ptr<LineReader> makePlainReader();

/// Lets lines be edited on a terminal, with a history that is kept in a file where that can be, and
/// completion by Tab.
std::unique_ptr<LineReader> makeEditingReader(LineCompleter completer);

}  // namespace mmq
