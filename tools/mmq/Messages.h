// The messages of compilations, written for people or for programs.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "ExpressionText.h"
#include "Options.h"
#include "api/ExprParserDialogs.h"
#include "names/SymbolHints.h"

namespace mmq {

/// The name of this program as the source of messages.
inline constexpr const char* messageSource = "mmq";

/// Whether what is written to a stream of this number is to have colours.
bool wantsColor(When when, int stream);

/// A text that a message speaks of, in quotes, on one line whatever it holds.
std::string inQuotes(std::string_view text);

/// Of errors and of notes that this program finds in one text, so many are shown.
inline constexpr std::size_t mostErrorsShown = 100;

/// Writes a line of advice about the line before to the standard error stream, unless it is empty.
void showAdvice(const std::string& advice);

/// Takes messages about texts, with their places, and lines of advice about them.
class MessageSink {
public:
    MessageSink() = default;
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;
    virtual ~MessageSink() = default;

    /// Takes an error, or with the severity Info a note.
    virtual void write(const MessagePlace& place, const std::string& source,
                       const std::string& message, ExprParserDialogs::MessageSeverity severity,
                       bool flag) = 0;
    /// Takes a line of advice about the message before.
    virtual void writeHint(const MessagePlace& place, const std::string& hint) = 0;
    /// Whether programs read the messages, which want every one, and no advice that is not certain.
    virtual bool isForPrograms() const { return false; }
    /// Whether errors are only counted by now, so that nobody need look for advice.
    virtual bool isFull() const { return false; }
};

/// For a compilation whose messages have been shown.
class SilentSink : public MessageSink {
public:
    void write(const MessagePlace& /*place*/, const std::string& /*source*/,
               const std::string& /*message*/, ExprParserDialogs::MessageSeverity /*severity*/,
               bool /*flag*/) override {}
    void writeHint(const MessagePlace& /*place*/, const std::string& /*hint*/) override {}
};

/// Writes messages to the standard error stream, in the form that the options choose: as text with
/// the source line and a caret, or as one JSON object a line.
class MessageWriter : public MessageSink {
public:
    explicit MessageWriter(const Options& options);

    void write(const MessagePlace& place, const std::string& source, const std::string& message,
               ExprParserDialogs::MessageSeverity severity, bool flag) override;
    void writeHint(const MessagePlace& place, const std::string& hint) override;
    bool isForPrograms() const override { return isJson_; }

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

/// Hands on each message of a compilation as it comes. Borrows the text of the expression.
class Messages : public ExprParserDialogs {
public:
    /// Writes them to the standard error stream. With `showsProgress`, progress messages are
    /// written as text, too; JSON always has them.
    Messages(const ExpressionText& text, const Options& options, bool showsProgress);
    /// Hands them to a sink, which is borrowed.
    Messages(const ExpressionText& text, MessageSink& sink);

    /// Lets advice name what is in the model at hand.
    void setNames(NamesAtHand names) { hints_.setNames(std::move(names)); }

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
    std::unique_ptr<MessageSink> ownSink_;  // where none is borrowed
    MessageSink& sink_;
    bool showsProgress_;
    SymbolHints hints_;
    int errorCount_ = 0;
    bool isEmpty_ = true;
};

}  // namespace mmq
