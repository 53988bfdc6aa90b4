// The interface through which a compilation speaks to the user.
#pragma once

#include <string>

/// What a host implements to see the messages of a compilation.
///
/// The host hands it to an entry point of ExprParser, which calls it on the caller's thread, in
/// the order of the messages, and keeps no reference to it. An exception that leaves an operation
/// ends the compilation with an empty result and goes no further; ending the thread there, by
/// pthread_exit() or a cancellation, ends the process. Threads that compile at once have a dialogs
/// object each, or one that is made for that.
class __attribute__((visibility("default"))) ExprParserDialogs {
public:
    /// How serious a message is. The values between have no use here; a host may give them one.
    enum MessageSeverity {
        Info = 0,  ///< progress: "Parse succeeded.", the number of errors, why it ended
        Error = 3  ///< what keeps the text from compiling
    };

    ExprParserDialogs() = default;
    ExprParserDialogs(const ExprParserDialogs&) = default;
    ExprParserDialogs& operator=(const ExprParserDialogs&) = default;
    virtual ~ExprParserDialogs();

    /// Asks the user and returns true for yes. Compilations ask nothing today.
    virtual bool askYesNo(const std::string& question, bool defaultAnswer) = 0;

    /// Takes one message. `line` and `column` are the place in the expression text, counted from 1
    /// in characters of one byte, tabs reaching to the columns 9, 17 and so on; both are 0 where
    /// there is no place. `source` names the speaker: "ExprParser" or "TypeChecker". `message` is
    /// one sentence, or several lines where it lists declarations. `flag` is always false.
    virtual void showMessage(int line, int column, const std::string& source,
                             const std::string& message, MessageSeverity severity, bool flag) = 0;
};
