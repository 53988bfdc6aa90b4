// What the lexer and the parser make of a text, for tests.
#pragma once

#include <pthread.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "api/RecordingDialogs.h"
#include "ast/ASTPrintVisitor.h"
#include "parser/DLGLexer.h"
#include "parser/SyntaxParser.h"
#include "support/ParseException.h"

/// The tokens of a text up to the end of the input, or up to the one at which the lexer threw.
struct ScanOutcome {
    std::vector<TokenPtr> tokens;
    std::string exception;  ///< "LINE:COLUMN MESSAGE"; empty where nothing was thrown
    std::string dropped;    ///< what went to the error stream
};

/// A tree, or the messages of the dialogs, or the exception, each empty where there is none.
struct ParseOutcome {
    OrvCountedPtr<SpecificationNode> tree;
    std::vector<std::string> messages;
    std::string exception;
    std::string dropped;
};

inline std::string described(const ParseException& exception) {
    return std::to_string(exception.getLine()) + ":" + std::to_string(exception.getColumn()) + " " +
           exception.what();
}

/// Scans `text` from `mode` on.
inline ScanOutcome scan(const std::string& text, int mode = 0,
                        std::size_t bufferSize = DLGLexer::defaultBufferSize) {
    ScanOutcome outcome;
    std::ostringstream errors;
    DLGStringInput input(text.c_str());
    DLGLexer lexer(&input, bufferSize, errors);
    const ColumnToken tokenTemplate;
    try {
        lexer.setMode(mode);
        do {
            outcome.tokens.push_back(lexer.nextToken(tokenTemplate));
        } while (outcome.tokens.back()->getNumber() != TOKEN_EOF);
    } catch (const ParseException& exception) {
        outcome.exception = described(exception);
    }
    outcome.dropped = errors.str();
    return outcome;
}

inline ParseOutcome parse(const std::string& text) {
    ParseOutcome outcome;
    std::ostringstream errors;
    RecordingDialogs dialogs;
    try {
        outcome.tree = SyntaxParser::parse(dialogs, text.c_str(), errors);
    } catch (const ParseException& exception) {
        outcome.exception = described(exception);
    }
    outcome.messages = dialogs.messages;
    outcome.dropped = errors.str();
    return outcome;
}

inline std::string printed(ASTNode& node) {
    std::ostringstream stream;
    ASTPrintVisitor printer(stream);
    node.accept(printer);
    return stream.str();
}

/// `text` with every `from` turned into `to`.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// The printed tree without positions ("@[LINE:COLUMN]"), or what came in its place.
inline std::string stripped(const ParseOutcome& outcome) {
    std::string text = "threw " + outcome.exception;
    if (outcome.tree) {
        text = printed(*outcome.tree);
    } else if (!outcome.messages.empty()) {
        text = "reported " + outcome.messages.front();
    }
    std::string result;
    std::size_t begin = 0;
    for (std::size_t at = 0; (at = text.find("@[", begin)) != std::string::npos;) {
        result.append(text, begin, at - begin);
        begin = text.find(']', at) + 1;
    }
    return result + text.substr(begin);
}

/// Runs `body` on a thread of its own that has a stack of `stackSize` bytes, and waits for it.
inline bool runOnStack(std::size_t stackSize, std::function<void()> body) {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    const bool started = pthread_attr_setstacksize(&attributes, stackSize) == 0 &&
                         pthread_create(&thread, &attributes, run, &body) == 0;
    pthread_attr_destroy(&attributes);
    return started && pthread_join(thread, nullptr) == 0;
}
