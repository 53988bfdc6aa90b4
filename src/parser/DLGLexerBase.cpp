#include "parser/DLGLexerBase.h"

#include "foundation/TextOutput.h"
#include "support/ParseException.h"

DLGLexerBase::DLGLexerBase(DLGStringInput* input, std::size_t bufferSize, std::ostream& errorStream,
                           const DLGAutomaton& automaton)
    : input_(input), errorStream_(errorStream), automaton_(automaton), bufferSize_(bufferSize) {
    if (input == nullptr) {
        throwLogged(OrvException("No input stream."));
    }
}

DLGLexerBase::~DLGLexerBase() = default;

void DLGLexerBase::failMode(int mode) const {
    fail("Invalid automaton mode = " + std::to_string(mode) + " ");
}

void DLGLexerBase::fail(const std::string& message) const {
    const std::string& sentence = message.empty() ? std::string("Syntax error") : message;
    throwLogged(ParseException(sentence + " (Text at point of error is \"" + textSoFar() + "\".)",
                               line_, beginColumn_));
}

void DLGLexerBase::newline() {
    ++line_;
    endColumn_ = 0;
}

void DLGLexerBase::tab() {
    constexpr int tabWidth = 8;
    endColumn_ = (endColumn_ - 1) / tabWidth * tabWidth + tabWidth;
}

// Of a token that is not complete: what it consists of, the lexeme recognised last included.
std::string DLGLexerBase::textSoFar() const {
    return (isGathering_ ? std::string(gathered_) : std::string()).append(lexeme_);
}

void DLGLexerBase::appendToOwnText(std::string_view text) {
    if (!hasOwnText_) {
        ownText_.assign(gathered_);
        hasOwnText_ = true;
    }
    ownText_.append(text);
    gathered_ = ownText_;
}

// In every mode but ordinary text, a token's text is what actions make of it.
void DLGLexerBase::beginLexeme() {
    isGathering_ = false;
    hasOwnText_ = false;
    if (mode_ != 0) {
        beginText();
    } else {
        const char* const blanks = input_->rest();
        const char* rest = blanks;
        while (*rest == ' ') {
            ++rest;
        }
        input_->advanceTo(rest);
        endColumn_ += static_cast<int>(rest - blanks);
    }
    beginColumn_ = endColumn_ + 1;
    beginOffset_ = input_->offset();
}

// Reads while there are transitions; returns the state reached. Most bytes leave the automaton
// where it is: the inner loop passes over them without waiting for a state.
std::size_t DLGLexerBase::runAutomaton() {
    auto state = static_cast<std::size_t>(mode_);
    const char* const begin = input_->rest();
    const char* end = begin;
    for (std::size_t to = state; to != DLGAutomaton::noState;) {
        state = to;
        const std::uint8_t* const row = automaton_.next[state].data();
        while (row[static_cast<unsigned char>(*end)] == state) {
            ++end;
        }
        to = row[static_cast<unsigned char>(*end)];
        end += to != DLGAutomaton::noState ? 1 : 0;
    }
    const auto length = static_cast<std::size_t>(end - begin);
    lexeme_ = std::string_view(begin, length);
    input_->advanceTo(end);
    endColumn_ += static_cast<int>(length);
    return state;
}

void DLGLexerBase::reportInvalid(const InvalidToken& invalid) {
    writeText(errorStream_, "invalid token near line " + std::to_string(invalid.line) +
                                " (text was '" + textSoFar() + "')\n");
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

DLGLexerBase::Outcome DLGLexerBase::recognizeLexeme(int& number) {
    if (input_->peek() < 0) {
        lexeme_ = {};
        return actAtEnd(number);
    }
    const std::size_t state = runAutomaton();
    number = automaton_.token[state];
    switch (automaton_.effect[state]) {
        case DLGAutomaton::Effect::token:
            return Outcome::token;
        case DLGAutomaton::Effect::action:
            return act(number);
        case DLGAutomaton::Effect::invalid:
            dropInvalid();
            return Outcome::skip;
        case DLGAutomaton::Effect::skip:
            break;
    }
    return Outcome::skip;
}

// Goes on to the end of the next token; returns its number. The memory of a token that was longer
// than the buffer is not kept until the end of the text.
int DLGLexerBase::recognize() {
    if (hasOwnText_ && ownText_.capacity() > bufferSize_) {
        ownText_ = std::string();
    }
    for (;;) {
        beginLexeme();
        int number = TOKEN_INVALID;
        Outcome outcome = Outcome::more;
        while (outcome == Outcome::more) {
            outcome = recognizeLexeme(number);
        }
        if (outcome == Outcome::token) {
            return number;
        }
    }
}

void DLGLexerBase::place(ColumnToken& token) const {
    token.setColumn(beginColumn_);
    token.setOffsets(beginOffset_, input_->offset());
}

TokenPtr DLGLexerBase::nextToken(const ColumnToken& tokenTemplate) {
    const int number = recognize();
    TokenPtr token = tokenTemplate.makeToken(number, tokenText(), line_);
    place(*token);
    return token;
}

void DLGLexerBase::readToken(ColumnToken& token) {
    const int number = recognize();
    if (hasOwnText_) {
        token.become(number, ownText_, line_);
    } else {
        token.becomeBorrowed(number, tokenText(), line_);
    }
    place(token);
}
