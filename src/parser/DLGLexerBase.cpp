#include "parser/DLGLexerBase.h"

#include "foundation/TextOutput.h"
#include "support/ParseException.h"

DLGLexerBase::DLGLexerBase(DLGStringInput* input, std::size_t bufferSize, std::ostream& errorStream)
    : input_(input), errorStream_(errorStream) {
    if (input == nullptr) {
        throwLogged(OrvException("No input stream."));
    }
    text_.reserve(bufferSize);
}

DLGLexerBase::~DLGLexerBase() = default;

void DLGLexerBase::setMode(int mode) {
    if (mode >= modeCount) {
        fail("Invalid automaton mode = " + std::to_string(mode) + " ");
    }
    mode_ = mode;
}

void DLGLexerBase::fail(const std::string& message) const {
    const std::string& sentence = message.empty() ? std::string("Syntax error") : message;
    throwLogged(ParseException(sentence + " (Text at point of error is \"" + text_ + "\".)", line_,
                               beginColumn_));
}

void DLGLexerBase::replaceEnd(std::size_t length, const char* replacement) {
    text_.replace(text_.size() - length, length, replacement);
}

void DLGLexerBase::newline() {
    ++line_;
    endColumn_ = 0;
}

void DLGLexerBase::tab() {
    constexpr int tabWidth = 8;
    endColumn_ = (endColumn_ - 1) / tabWidth * tabWidth + tabWidth;
}

void DLGLexerBase::beginLexeme() {
    text_.clear();
    beginColumn_ = endColumn_ + 1;
    beginOffset_ = input_->offset();
}

// Reads while there are transitions; returns the state reached.
int DLGLexerBase::runAutomaton() {
    int state = startState(mode_);
    for (int byte = input_->peek(); byte >= 0; byte = input_->peek()) {
        const int next = transition(state, byte);
        if (next < 0) {
            break;
        }
        state = next;
        text_.push_back(static_cast<char>(byte));
        input_->advance();
        ++endColumn_;
    }
    return state;
}

void DLGLexerBase::reportInvalid(const InvalidToken& invalid) {
    writeText(errorStream_, "invalid token near line " + std::to_string(invalid.line) +
                                " (text was '" + text_ + "')\n");
}

void DLGLexerBase::dropInvalid() {
    ++lexicalErrorCount_;
    const std::size_t end = input_->offset() + (input_->peek() >= 0 ? 1U : 0U);
    reportInvalid({line_, beginColumn_, beginOffset_, end, endColumn_ + 1, input_->offset()});
    if (input_->peek() >= 0) {
        input_->advance();
        ++endColumn_;
    }
}

TokenPtr DLGLexerBase::makeToken(const ColumnToken& tokenTemplate, int number) {
    TokenPtr token = tokenTemplate.makeToken(number, text_, line_);
    token->setColumn(beginColumn_);
    token->setOffsets(beginOffset_, input_->offset());
    return token;
}

TokenPtr DLGLexerBase::nextToken(const ColumnToken& tokenTemplate) {
    Outcome outcome = Outcome::skip;
    int number = TOKEN_INVALID;
    while (outcome != Outcome::token) {
        if (outcome == Outcome::skip) {
            beginLexeme();
        }
        if (input_->peek() < 0) {
            outcome = actAtEnd(number);
            continue;
        }
        number = acceptedToken(runAutomaton());
        if (number == TOKEN_INVALID) {
            dropInvalid();
            outcome = Outcome::skip;
        } else {
            outcome = act(number);
        }
    }
    return makeToken(tokenTemplate, number);
}
