// The first errors of many.
#pragma once

#include <cstddef>
#include <string>

#include "Messages.h"

namespace mmq {

/// Hands on the first hundred errors, with their hints, and counts the others: a file that is wrong
/// in a hundred thousand places is not mended by reading about them all. Borrows the sink.
class ErrorLimit : public MessageSink {
public:
    explicit ErrorLimit(MessageSink& sink) : sink_(sink) {}

    void write(const MessagePlace& place, const std::string& source, const std::string& message,
               ExprParserDialogs::MessageSeverity severity, bool flag) override;
    void writeHint(const MessagePlace& place, const std::string& hint) override;
    bool isForPrograms() const override { return sink_.isForPrograms(); }
    bool isFull() const override { return count_ > mostErrorsShown; }

    /// Tells how many errors there are, if not all are shown; if the work ended early, only that
    /// there are more.
    void finish(bool isComplete = true);

private:
    MessageSink& sink_;
    std::size_t count_ = 0;
    MessagePlace next_;  // of the first error that is not shown
};

}  // namespace mmq
