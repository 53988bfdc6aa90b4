// What the fuzz targets of the compiler share: texts made of bytes, and dialogs that check
// positions.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "api/ExprParserDialogs.h"
#include "parser/DLGLexer.h"
#include "support/ParseException.h"

/// Ends the process where something holds that must not; the fuzzer keeps the input.
inline void failIf(bool condition) {
    if (condition) {
        std::abort();
    }
}

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Loses what a stream writes.
class SilentStream : public std::ostream {
public:
    SilentStream() : std::ostream(nullptr) {}
};

/// The places of a text's tokens, the end included, and of the exception that ends them.
inline std::set<std::pair<int, int>> placesOf(const std::string& text) {
    std::set<std::pair<int, int>> places;
    SilentStream silent;
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input, DLGLexer::defaultBufferSize, silent);
    const ColumnToken tokenTemplate;
    try {
        for (int number = TOKEN_INVALID; number != TOKEN_EOF;) {
            const TokenPtr token = lexer.nextToken(tokenTemplate);
            number = token->getNumber();
            places.emplace(token->getLine(), token->getColumn());
        }
    } catch (const ParseException& exception) {
        places.emplace(exception.getLine(), exception.getColumn());
    }
    return places;
}

/// Checks that each error has the place of a token, and progress none; counts errors, and keeps
/// all messages.
class CheckingDialogs : public ExprParserDialogs {
public:
    explicit CheckingDialogs(const std::string& text) : places_(placesOf(text)) {}

    bool askYesNo(const std::string& /*question*/, bool defaultAnswer) override {
        return defaultAnswer;
    }
    void showMessage(int line, int column, const std::string& /*source*/,
                     const std::string& message, MessageSeverity severity, bool flag) override {
        failIf(message.empty() || flag);
        failIf(severity == Error && places_.count({line, column}) == 0);
        failIf(severity == Info && (line != 0 || column != 0));
        errors_ += severity == Error ? 1 : 0;
        shown_ += std::to_string(line) + ':' + std::to_string(column) + ' ' + message + '\n';
    }

    int errorCount() const { return errors_; }
    const std::string& shown() const { return shown_; }

private:
    std::set<std::pair<int, int>> places_;
    int errors_ = 0;
    std::string shown_;
};
