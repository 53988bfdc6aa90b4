// The messages of compilations, written for people or for programs.
#pragma once

#include <string>
#include <string_view>

#include "ExpressionText.h"
#include "Options.h"
#include "api/ExprParserDialogs.h"

namespace mmq {

/// The name of this program as the source of messages.
inline constexpr const char* messageSource = "mmq";

/// Whether what is written to a stream of this number is to have colours.
bool wantsColor(When when, int stream);

/// A text that a message speaks of, in quotes, on one line whatever it holds.
std::string quoted(std::string_view text);

/// Of errors and of notes that this program finds in one text, so many are shown.
inline constexpr std::size_t mostErrorsShown = 100;

/// Writes a line of advice about the line before to the standard error stream, unless it is empty.
void showAdvice(const std::string& advice);

/// Writes messages to the standard error stream, in the form that the options choose: as text with
/// the source line and a caret, or as one JSON object a line.
class MessageWriter {
public:
    explicit MessageWriter(const Options& options);

    bool isJson() const { return isJson_; }

    /// Writes an error, or with the severity Info a note.
    void write(const MessagePlace& place, const std::string& source, const std::string& message,
               ExprParserDialogs::MessageSeverity severity, bool flag) const;
    /// Writes a line of advice about the message before.
    void writeHint(const MessagePlace& place, const std::string& hint) const;

private:
    std::string colored(const char* code, const std::string& text) const;

    bool isJson_;
    bool isColored_;
};

/// Dialogs for a compilation whose messages will be shown by another one.
class SilentDialogs : public ExprParserDialogs {
public:
    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int /*line*/, int /*column*/, const std::string& /*source*/,
                     const std::string& /*message*/, MessageSeverity /*severity*/,
                     bool /*flag*/) override {}
};

/// Writes each message of a compilation as it comes. Borrows the text of the expression.
class Messages : public ExprParserDialogs {
public:
    /// With `showsProgress`, progress messages are written as text, too; JSON always has them.
    Messages(const ExpressionText& text, const Options& options, bool showsProgress);

    /// Nobody is there to ask.
    bool askYesNo(const std::string& question, bool defaultAnswer) override;
    void showMessage(int line, int column, const std::string& source, const std::string& message,
                     MessageSeverity severity, bool flag) override;

    /// Writes errors of this program's own: the first hundred, and how many there are.
    void showErrors(const std::vector<TextError>& errors);
    /// Writes what is to be told of a text that is right, in text with its place; the first
    /// hundred.
    void showNotes(const std::vector<TextError>& notes);
    /// Writes a line of advice about the message before.
    void showHint(int line, int column, const std::string& hint);

    int errorCount() const { return errorCount_; }
    /// Whether anything was said.
    bool isEmpty() const { return isEmpty_; }

private:
    const ExpressionText& text_;
    MessageWriter writer_;
    bool showsProgress_;
    int errorCount_ = 0;
    bool isEmpty_ = true;
};

}  // namespace mmq
