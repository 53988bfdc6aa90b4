// mmq repl: a prompt for expressions about a model.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <new>

#include "Commands.h"
#include "ExitStatus.h"
#include "assist/PartialText.h"
#include "repl/Interrupt.h"
#include "repl/LineReader.h"
#include "repl/Session.h"

namespace mmq {

namespace {

/// Puts lines together to inputs, and has them run.
class Prompt {
public:
    Prompt(Session& session, bool isInteractive)
        : session_(session),
          reader_(isInteractive
                      ? makeEditingReader([this](const std::string& line, std::size_t cursor) {
                            return complete(line, cursor);
                        })
                      : makePlainReader()) {}

    void run() {
        std::string line;
        while (!session_.isOver()) {
            const LineReader::Outcome outcome =
                reader_->read(input_.empty() ? "mmq> " : "...> ", line);
            if (outcome == LineReader::Outcome::interrupted) {
                input_.clear();
                continue;
            }
            if (outcome == LineReader::Outcome::end) {
                finish();
                return;
            }
            take(line);
        }
    }

private:
    // An input ends where its expression does, or at an empty line. A long one is not parsed anew
    // for every line: what is wrong in it shows with a line that may be the last.
    void take(const std::string& line) {
        constexpr std::size_t longInput = 1000;
        const bool goesOn = input_.size() > longInput && needsAnotherLine(line);
        const bool isEnd = line.find_first_not_of(replBlanks) == std::string::npos;
        if (!isEnd) {
            input_ += line + "\n";
        }
        if (isEnd || (!goesOn && !Session::isUnfinished(input_))) {
            finish();
        }
    }

    void finish() {
        if (!input_.empty()) {
            input_.resize(input_.find_last_not_of(replBlanks) + 1);
            reader_->remember(onOneLine());
            try {
                session_.run(input_);
            } catch (const std::bad_alloc&) {
                std::cerr << "There is not enough memory.\n";
            }
        }
        input_.clear();
    }

    // Line ends mean no more than blanks in an expression.
    std::string onOneLine() const {
        std::string line = input_;
        for (char& byte : line) {
            byte = byte == '\n' ? ' ' : byte;
        }
        return line;
    }

    Completion complete(const std::string& line, std::size_t cursor) const {
        Completion completion = session_.complete(input_ + line, input_.size() + cursor);
        completion.offset -= input_.size();
        return completion;
    }

    Session& session_;
    std::string input_;  // the lines so far
    std::unique_ptr<LineReader> reader_;
};

}  // namespace

int runRepl(const Options& options) {
    const bool isInteractive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    Session session(options, Interrupt::flag());
    if (!isInteractive) {
        Prompt(session, false).run();
        return session.firstFailure();
    }
    const Interrupt interrupt;
    std::cout << session.greeting() << '\n';
    Prompt(session, true).run();
    return EXIT_DONE;
}

}  // namespace mmq
