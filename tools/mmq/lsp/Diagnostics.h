// What is wrong with a text, for an editor.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Messages.h"

namespace mmq {

/// A message about a piece of a text.
struct Diagnostic {
    std::size_t offset = 0;
    std::size_t endOffset = 0;
    bool isError = true;  ///< else a note
    std::string code;     ///< the stage that found it, or empty for a check of this program's own
    std::string message;
};

/// Collects messages as diagnostics, a line of advice with the message that it is about. Of very
/// many, the first are kept. Lives as long as one look at a text takes.
class DiagnosticList : public MessageSink {
public:
    /// The text that messages speak of stands `shift` bytes behind the beginning of the document.
    explicit DiagnosticList(std::size_t shift = 0) : shift_(shift) {}

    void write(const MessagePlace& place, const std::string& source, const std::string& message,
               ExprParserDialogs::MessageSeverity severity, bool flag) override;
    void writeHint(const MessagePlace& place, const std::string& hint) override;

    std::vector<Diagnostic> take();

private:
    std::size_t shift_;
    std::size_t count_ = 0;
    std::vector<Diagnostic> diagnostics_;
};

}  // namespace mmq
