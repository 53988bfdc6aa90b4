#include "Messages.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "foundation/TextOutput.h"

namespace mmq {

namespace {

// A pattern beside "~=" is an error that everybody makes once.
bool isPatternBesideMatch(const std::string& message) {
    return message.rfind("There is no operator~", 0) == 0 &&
           message.find("{regexp}") < message.find('\n');
}

constexpr const char* patternHint =
    "Put the pattern in double quotes, with \\\\ for a backslash, or use match.";

}  // namespace

bool wantsColor(When when, int stream) {
    if (when != When::automatic) {
        return when == When::always;
    }
    const char* const refusal = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    const bool isDumb = terminal != nullptr && std::string_view(terminal) == "dumb";
    return (refusal == nullptr || *refusal == '\0') && !isDumb && isatty(stream) != 0;
}

std::string inQuotes(std::string_view text) {
    std::string result;
    appendJsonString(result, text);
    return result;
}

void showAdvice(const std::string& advice) {
    if (!advice.empty()) {
        std::cerr << "mmq: " << advice << '\n';
    }
}

MessageWriter::MessageWriter(const Options& options)
    : isJson_(options.messages == MessageFormat::json),
      isColored_(!isJson_ && wantsColor(options.color, STDERR_FILENO)) {}

std::string MessageWriter::colored(const char* code, const std::string& text) const {
    return isColored_ ? std::string("\033[") + code + "m" + text + "\033[0m" : text;
}

void MessageWriter::write(const MessagePlace& place, const std::string& source,
                          const std::string& message, ExprParserDialogs::MessageSeverity severity,
                          bool flag) {
    if (!isJson_) {
        std::cerr << place.file << (place.file.empty() ? "" : ":") << place.line << ':'
                  << place.column << ": "
                  << (severity == ExprParserDialogs::Error ? colored("1;31", "error:")
                                                           : colored("1;36", "note:"))
                  << ' ' << message << (message.empty() || message.back() != '\n' ? "\n" : "")
                  << place.excerpt;
        return;
    }
    std::string object = "{";
    if (!place.file.empty()) {
        object += "\"file\":";
        appendJsonString(object, place.file);
        object += ',';
    }
    object += "\"line\":" + std::to_string(place.line) +
              ",\"column\":" + std::to_string(place.column) + ",\"source\":";
    appendJsonString(object, source);
    object += ",\"message\":";
    appendJsonString(object, message);
    object += ",\"severity\":" + std::to_string(severity) +
              ",\"flag\":" + (flag ? "true" : "false") + "}\n";
    std::cerr << object;
}

void MessageWriter::writeHint(const MessagePlace& place, const std::string& hint) {
    if (isJson_) {
        write(place, messageSource, hint, ExprParserDialogs::Info, false);
    } else {
        std::cerr << colored("1;36", "hint:") << ' ' << hint << '\n';
    }
}

Messages::Messages(const ExpressionText& text, const Options& options, bool showsProgress)
    : text_(text),
      ownSink_(std::make_unique<MessageWriter>(options)),
      sink_(*ownSink_),
      showsProgress_(showsProgress),
      hints_(text.text()) {}

Messages::Messages(const ExpressionText& text, MessageSink& sink)
    : text_(text), sink_(sink), showsProgress_(false), hints_(text.text()) {}

bool Messages::askYesNo(const std::string& /*question*/, bool defaultAnswer) {
    return defaultAnswer;
}

void Messages::showMessage(int line, int column, const std::string& source,
                           const std::string& message, MessageSeverity severity, bool flag) {
    isEmpty_ = false;
    errorCount_ += severity == Error ? 1 : 0;
    if (severity == Error || sink_.isForPrograms()) {
        sink_.write(text_.place(line, column), source, message, severity, flag);
    } else if (showsProgress_) {
        std::cerr << message << '\n';
    }
    if (sink_.isFull()) {
        return;
    }
    const std::string hint = isPatternBesideMatch(message)
                                 ? patternHint
                                 : hints_.hintFor(message, line, column, !sink_.isForPrograms());
    if (!hint.empty()) {
        showHint(line, column, hint);
    }
}

void Messages::showErrors(const std::vector<TextError>& errors) {
    for (std::size_t i = 0; i < std::min(errors.size(), mostErrorsShown); ++i) {
        const TextError& error = errors[i];
        showMessage(error.line, error.column, messageSource, error.sentence, Error, false);
        if (!error.hint.empty()) {
            showHint(error.line, error.column, error.hint);
        }
    }
    if (errors.size() > mostErrorsShown) {
        const TextError& next = errors[mostErrorsShown];
        showMessage(next.line, next.column, messageSource,
                    "There are " + std::to_string(errors.size()) +
                        " errors like these; the first 100 are shown.",
                    Error, false);
    }
}

void Messages::showNotes(const std::vector<TextError>& notes) {
    for (std::size_t i = 0; i < std::min(notes.size(), mostErrorsShown); ++i) {
        sink_.write(text_.place(notes[i].line, notes[i].column), messageSource, notes[i].sentence,
                    Info, false);
    }
}

void Messages::showHint(int line, int column, const std::string& hint) {
    sink_.writeHint(text_.place(line, column), hint);
}

}  // namespace mmq
