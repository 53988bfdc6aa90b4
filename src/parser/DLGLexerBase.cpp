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
    line_ = numberBehind(static_cast<std::size_t>(line_));
    setEndColumn(0);
}

void DLGLexerBase::tab() {
    constexpr std::size_t tabWidth = 8;
    setEndColumn((endColumn() - 1) / tabWidth * tabWidth + tabWidth);
}

// Of a token that is not complete: what it consists of, the lexeme recognised last included.
std::string DLGLexerBase::textSoFar() const { return std::string(text_).append(lexeme_); }

void DLGLexerBase::appendToOwnText(std::string_view text) {
    if (!hasOwnText_) {
        ownText_.assign(text_);
        hasOwnText_ = true;
    }
    ownText_.append(text);
    text_ = ownText_;
}

// The memory of a token that was longer than the buffer is not kept until the end of the text.
void DLGLexerBase::dropText() {
    text_ = {};
    if (hasOwnText_ && ownText_.capacity() > bufferSize_) {
        ownText_ = std::string();
    }
    hasOwnText_ = false;
}

// Where the next lexeme starts.
inline const char* DLGLexerBase::beginLexeme() {
    if (!text_.empty()) {
        dropText();
    }
    const char* rest = input_->rest();
    if (mode_ == 0) {
        while (*rest == ' ') {
            ++rest;
        }
    }
    return rest;
}

// Reads from `begin` while there are transitions. Most bytes leave the automaton where it is: the
// inner loop passes over them without waiting for a state.
inline DLGLexerBase::Run DLGLexerBase::runAutomaton(const char* begin) {
    const auto* const rows = automaton_.next.data();
    auto state = static_cast<std::size_t>(mode_);
    const char* end = begin;
    std::size_t to = rows[state][static_cast<unsigned char>(*end)];
    while (to != DLGAutomaton::noState) {
        state = to;
        const std::uint8_t* const row = rows[state].data();
        do {
            ++end;
            to = row[static_cast<unsigned char>(*end)];
        } while (to == state);
    }
    input_->advanceTo(end);
    return {state, begin, end};
}

void DLGLexerBase::reportInvalid(const InvalidToken& invalid) {
    writeText(errorStream_, "invalid token near line " + std::to_string(invalid.line) +
                                " (text was '" + textSoFar() + "')\n");
}

void DLGLexerBase::dropInvalid() {
    lexicalErrorCount_ = numberBehind(static_cast<std::size_t>(lexicalErrorCount_));
    const std::size_t end = input_->offset() + (input_->peek() >= 0 ? 1U : 0U);
    reportInvalid(
        {line_, beginColumn_, beginOffset_, end, numberBehind(endColumn()), input_->offset()});
    if (input_->peek() >= 0) {
        input_->advance();
    }
}

DLGLexerBase::Outcome DLGLexerBase::endLexeme(std::size_t state, int& number) {
    switch (automaton_.effect[state]) {
        case DLGAutomaton::Effect::action:
            return act(number);
        case DLGAutomaton::Effect::skip:
            return Outcome::skip;
        default:
            break;
    }
    if (lexeme_.empty() && input_->peek() < 0) {
        return actAtEnd(number);
    }
    dropInvalid();
    return Outcome::skip;
}

// Ends a lexeme that is no token as it stands, and the token of which it is a part, if it is: then
// `token`, which has its place, becomes that; else there is none yet.
bool DLGLexerBase::endByAction(std::size_t state, ColumnToken& token) {
    beginOffset_ = token.getOffset();
    beginColumn_ = token.getColumn();
    lexeme_ = input_->takenFrom(beginOffset_);
    int number = automaton_.token[state];
    Outcome outcome = endLexeme(state, number);
    while (outcome == Outcome::more) {
        const Run next = runAutomaton(input_->rest());
        lexeme_ = next.lexeme();
        number = automaton_.token[next.state];
        outcome = endLexeme(next.state, number);
    }
    if (outcome != Outcome::token) {
        return false;
    }
    if (hasOwnText_) {
        token.become(number, ownText_);
    } else {
        token.becomeBorrowed(number, text_);
    }
    token.setOffsets(beginOffset_, input_->offset());
    return true;
}

// Reads one lexeme; most are a whole token.
inline bool DLGLexerBase::recognize(ColumnToken& token) {
    const Run run = runAutomaton(beginLexeme());
    const std::size_t offset = input_->offsetOf(run.begin);
    token.setPlace(line_, numberBehind(offset - columnOrigin_), offset, input_->offset());
    switch (automaton_.effect[run.state]) {
        case DLGAutomaton::Effect::token:
            token.becomeBorrowed(automaton_.token[run.state], run.lexeme());
            return true;
        case DLGAutomaton::Effect::word:
            token.becomeBorrowed(wordNumber(run.lexeme()), run.lexeme());
            return true;
        case DLGAutomaton::Effect::quoted:
            token.becomeBorrowed(automaton_.token[run.state], run.unquoted());
            return true;
        default:
            return endByAction(run.state, token);
    }
}

TokenPtr DLGLexerBase::nextToken(const ColumnToken& tokenTemplate) {
    ColumnToken read;
    readToken(read);
    TokenPtr token = tokenTemplate.makeToken(read.getNumber(), read.text(), read.getLine());
    token->setColumn(read.getColumn());
    token->setOffsets(read.getOffset(), read.getEndOffset());
    return token;
}

void DLGLexerBase::readToken(ColumnToken& token) {
    while (!recognize(token)) {
    }
}
