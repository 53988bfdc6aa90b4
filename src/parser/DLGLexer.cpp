// The automaton is a table: for each state and each byte the next state, and for each state the
// token that it accepts. The table is computed at compile time from the list of states below, each
// of which names its transitions; a state is the set of texts that may still become the same
// tokens. Actions stand in the functions act...(): one for ordinary text, one for comments, one
// for the three quoted modes, which differ in their token numbers and their closing character. What
// is quoted and holds neither an escape nor a line end is a token of ordinary text; only what comes
// before an escape is, too, and the quoted mode goes on from there.
#include "parser/DLGLexer.h"

#include <array>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

#include "parser/KeywordTable.h"

namespace {

enum Mode {
    MODE_TEXT = 0,
    MODE_COMMENT = 1,
    MODE_STRING = 2,
    MODE_ASSOCIATION = 3,
    MODE_PATTERN = 4
};

// The first five are the states in which lexemes of the five modes start.
enum State : std::uint8_t {
    START_TEXT,
    START_COMMENT,
    START_STRING,
    START_ASSOCIATION,
    START_PATTERN,
    BLANK,
    TAB,
    NEWLINE,
    EQUAL,
    DOUBLE_ARROW,
    LESS,
    NOT_EQUAL,
    LESS_EQUAL,
    TILDE,
    REGEXP_EQUAL,
    TILDE_LESS,
    REGEXP_NOT_EQUAL,
    GREATER,
    GREATER_EQUAL,
    PLUS,
    MINUS,
    ARROW,
    STAR,
    STRAY_COMMENT_END,
    SLASH,
    AMPERSAND,
    LEFT_PARENTHESIS,
    COMMENT_START,
    RIGHT_PARENTHESIS,
    LEFT_BRACE,
    RIGHT_BRACE,
    AT,
    SEMICOLON,
    COLON,
    CARET,
    UNDERSCORE,
    COMMA,
    DOLLAR,
    BAR,
    BAR_EQUAL,
    BAR_ARROW,
    INTEGER,
    INTEGER_POINT,
    REAL,
    IDENTIFIER,
    STRING_QUOTE,
    STRING_WHOLE,
    ASSOCIATION_QUOTE,
    ASSOCIATION_WHOLE,
    PATTERN_QUOTE,
    PATTERN_WHOLE,
    COMMENT_STAR,
    COMMENT_END,
    COMMENT_TAB,
    COMMENT_NEWLINE,
    COMMENT_TEXT,
    STRING_END,
    STRING_BACKSLASH,
    STRING_ESCAPED_QUOTE,
    STRING_ESCAPED_BACKSLASH,
    STRING_ESCAPED_NEWLINE,
    STRING_ESCAPED_RETURN,
    STRING_ESCAPED_TAB,
    STRING_RETURN,
    STRING_RETURN_NEWLINE,
    STRING_NEWLINE,
    STRING_TEXT,
    ASSOCIATION_END,
    ASSOCIATION_BACKSLASH,
    ASSOCIATION_ESCAPED_BRACKET,
    ASSOCIATION_ESCAPED_BACKSLASH,
    ASSOCIATION_ESCAPED_NEWLINE,
    ASSOCIATION_ESCAPED_RETURN,
    ASSOCIATION_ESCAPED_TAB,
    ASSOCIATION_RETURN,
    ASSOCIATION_RETURN_NEWLINE,
    ASSOCIATION_NEWLINE,
    ASSOCIATION_TEXT,
    PATTERN_END,
    PATTERN_RETURN,
    PATTERN_RETURN_NEWLINE,
    PATTERN_NEWLINE,
    PATTERN_TEXT,
    STATE_COUNT
};

static_assert(STATE_COUNT <= DLGAutomaton::maximumStates);

/// The automaton while its table is computed.
struct Automaton : DLGAutomaton {
    constexpr void on(State from, std::string_view bytes, State to) {
        for (const char byte : bytes) {
            next[from][static_cast<unsigned char>(byte)] = to;
        }
    }
    // Every byte but `bytes` and NUL, which ends the text.
    constexpr void onOther(State from, std::string_view bytes, State to) {
        for (std::size_t byte = 1; byte < 256; ++byte) {
            if (bytes.find(static_cast<char>(byte)) == std::string_view::npos) {
                next[from][byte] = to;
            }
        }
    }
};

constexpr std::string_view digits = "0123456789";
constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

struct Operator {
    char byte;
    State state;
    TokenNumber token;
};

// Tokens of one character, some of which begin longer ones. A blank where a token may begin is
// passed over before the table is asked.
constexpr std::array<Operator, 26> singles = {{{'\r', BLANK, TOKEN_BLANK},
                                               {'\t', TAB, TOKEN_TAB},
                                               {'\n', NEWLINE, TOKEN_NEWLINE},
                                               {'=', EQUAL, TOKEN_EQUAL},
                                               {'<', LESS, TOKEN_LESS},
                                               {'>', GREATER, TOKEN_GREATER},
                                               {'+', PLUS, TOKEN_PLUS},
                                               {'-', MINUS, TOKEN_MINUS},
                                               {'*', STAR, TOKEN_STAR},
                                               {'/', SLASH, TOKEN_SLASH},
                                               {'&', AMPERSAND, TOKEN_AMPERSAND},
                                               {'(', LEFT_PARENTHESIS, TOKEN_LEFT_PARENTHESIS},
                                               {')', RIGHT_PARENTHESIS, TOKEN_RIGHT_PARENTHESIS},
                                               {'{', LEFT_BRACE, TOKEN_LEFT_BRACE},
                                               {'}', RIGHT_BRACE, TOKEN_RIGHT_BRACE},
                                               {'@', AT, TOKEN_AT},
                                               {';', SEMICOLON, TOKEN_SEMICOLON},
                                               {':', COLON, TOKEN_COLON},
                                               {'^', CARET, TOKEN_CARET},
                                               {'_', UNDERSCORE, TOKEN_UNDERSCORE},
                                               {',', COMMA, TOKEN_COMMA},
                                               {'$', DOLLAR, TOKEN_DOLLAR},
                                               {'~', TILDE, TOKEN_INVALID},
                                               {'|', BAR, TOKEN_INVALID},
                                               {'"', STRING_QUOTE, TOKEN_STRING_START},
                                               {'[', ASSOCIATION_QUOTE, TOKEN_ASSOCIATION_START}}};

constexpr void addText(Automaton& automaton) {
    for (const Operator& single : singles) {
        automaton.on(START_TEXT, std::string_view(&single.byte, 1), single.state);
        automaton.token[single.state] = static_cast<std::uint8_t>(single.token);
    }
    const auto longer = [&automaton](State from, std::string_view bytes, State to,
                                     TokenNumber token) {
        automaton.on(from, bytes, to);
        automaton.token[to] = static_cast<std::uint8_t>(token);
    };
    automaton.on(BLANK, " \r", BLANK);
    longer(START_TEXT, "`", PATTERN_QUOTE, TOKEN_PATTERN_START);
    longer(EQUAL, ">", DOUBLE_ARROW, TOKEN_DOUBLE_ARROW);
    longer(LESS, ">", NOT_EQUAL, TOKEN_NOT_EQUAL);
    longer(LESS, "=", LESS_EQUAL, TOKEN_LESS_EQUAL);
    longer(TILDE, "=", REGEXP_EQUAL, TOKEN_REGEXP_EQUAL);
    longer(TILDE, "<", TILDE_LESS, TOKEN_INVALID);
    longer(TILDE_LESS, ">", REGEXP_NOT_EQUAL, TOKEN_REGEXP_NOT_EQUAL);
    longer(GREATER, "=", GREATER_EQUAL, TOKEN_GREATER_EQUAL);
    longer(MINUS, ">", ARROW, TOKEN_ARROW);
    longer(STAR, ")", STRAY_COMMENT_END, TOKEN_STRAY_COMMENT_END);
    longer(LEFT_PARENTHESIS, "*", COMMENT_START, TOKEN_COMMENT_START);
    longer(BAR, "=", BAR_EQUAL, TOKEN_INVALID);
    longer(BAR_EQUAL, ">", BAR_ARROW, TOKEN_BAR_ARROW);
    longer(START_TEXT, digits, INTEGER, TOKEN_INTEGER_LITERAL);
    longer(INTEGER, digits, INTEGER, TOKEN_INTEGER_LITERAL);
    longer(INTEGER, ".", INTEGER_POINT, TOKEN_INVALID);
    longer(INTEGER_POINT, digits, REAL, TOKEN_REAL_LITERAL);
    longer(REAL, digits, REAL, TOKEN_REAL_LITERAL);
    longer(START_TEXT, letters, IDENTIFIER, TOKEN_VARIABLE_OR_FUNCTION);
    for (const State from : {UNDERSCORE, IDENTIFIER}) {
        automaton.on(from, letters, IDENTIFIER);
        automaton.on(from, digits, IDENTIFIER);
        automaton.on(from, "_", IDENTIFIER);
    }
}

constexpr void addComment(Automaton& automaton) {
    automaton.on(START_COMMENT, "*", COMMENT_STAR);
    automaton.on(COMMENT_STAR, ")", COMMENT_END);
    automaton.on(START_COMMENT, "\t", COMMENT_TAB);
    automaton.on(START_COMMENT, "\n", COMMENT_NEWLINE);
    automaton.onOther(START_COMMENT, "*\t\n", COMMENT_TEXT);
    automaton.onOther(COMMENT_TEXT, "*\t\n", COMMENT_TEXT);
    automaton.token[COMMENT_STAR] = TOKEN_COMMENT_STAR;
    automaton.token[COMMENT_END] = TOKEN_COMMENT_END;
    automaton.token[COMMENT_TAB] = TOKEN_COMMENT_TAB;
    automaton.token[COMMENT_NEWLINE] = TOKEN_COMMENT_NEWLINE;
    automaton.token[COMMENT_TEXT] = TOKEN_COMMENT_TEXT;
}

// The states of a quoted mode, by their distance from the first, and the number of the token that
// closes it; the states accept the tokens that follow that number, in this order.
constexpr void addEscapes(Automaton& automaton, State backslash, std::string_view closing,
                          TokenNumber end) {
    constexpr std::string_view escapes = "\\nrt";
    automaton.on(backslash, closing, static_cast<State>(backslash + 1));
    for (std::size_t i = 0; i < escapes.size(); ++i) {
        automaton.on(backslash, escapes.substr(i, 1),
                     static_cast<State>(backslash + 2 + static_cast<int>(i)));
    }
    for (std::size_t i = 1; i <= 5; ++i) {
        automaton.token[std::size_t{backslash} + i] =
            static_cast<std::uint8_t>(static_cast<std::size_t>(end) + i);
    }
}

constexpr void addLineEnds(Automaton& automaton, State start, State ret, TokenNumber first) {
    const auto newlineAfterReturn = static_cast<State>(ret + 1);
    const auto newline = static_cast<State>(ret + 2);
    automaton.on(start, "\r", ret);
    automaton.on(ret, "\n", newlineAfterReturn);
    automaton.on(start, "\n", newline);
    automaton.token[newlineAfterReturn] = static_cast<std::uint8_t>(first);
    automaton.token[ret] = static_cast<std::uint8_t>(first + 1);
    automaton.token[newline] = static_cast<std::uint8_t>(first + 2);
}

constexpr void addRun(Automaton& automaton, State start, std::string_view others, State run,
                      TokenNumber token) {
    automaton.onOther(start, others, run);
    automaton.onOther(run, others, run);
    automaton.token[run] = static_cast<std::uint8_t>(token);
}

// What is quoted and holds none of `others`, which begin with the closing character.
constexpr void addWhole(Automaton& automaton, State quote, std::string_view others, State whole,
                        TokenNumber token) {
    automaton.onOther(quote, others, quote);
    automaton.on(quote, others.substr(0, 1), whole);
    automaton.token[whole] = static_cast<std::uint8_t>(token);
}

constexpr void addQuotes(Automaton& automaton) {
    addWhole(automaton, STRING_QUOTE, "\"\\\r\n", STRING_WHOLE, TOKEN_STRING_LITERAL);
    automaton.on(START_STRING, "\"", STRING_END);
    automaton.token[STRING_END] = TOKEN_STRING_LITERAL;
    automaton.on(START_STRING, "\\", STRING_BACKSLASH);
    addEscapes(automaton, STRING_BACKSLASH, "\"", TOKEN_STRING_LITERAL);
    addLineEnds(automaton, START_STRING, STRING_RETURN, TOKEN_STRING_RETURN_NEWLINE);
    addRun(automaton, START_STRING, "\"\\\r\n", STRING_TEXT, TOKEN_STRING_TEXT);

    addWhole(automaton, ASSOCIATION_QUOTE, "]\\\r\n", ASSOCIATION_WHOLE, TOKEN_ASSOCIATION_NAME);
    automaton.on(START_ASSOCIATION, "]", ASSOCIATION_END);
    automaton.token[ASSOCIATION_END] = TOKEN_ASSOCIATION_NAME;
    automaton.on(START_ASSOCIATION, "\\", ASSOCIATION_BACKSLASH);
    addEscapes(automaton, ASSOCIATION_BACKSLASH, "]", TOKEN_ASSOCIATION_NAME);
    addLineEnds(automaton, START_ASSOCIATION, ASSOCIATION_RETURN, TOKEN_ASSOCIATION_RETURN_NEWLINE);
    addRun(automaton, START_ASSOCIATION, "]\\\r\n", ASSOCIATION_TEXT, TOKEN_ASSOCIATION_TEXT);

    addWhole(automaton, PATTERN_QUOTE, "`\r\n", PATTERN_WHOLE, TOKEN_REGULAR_EXPRESSION);
    automaton.on(START_PATTERN, "`", PATTERN_END);
    automaton.token[PATTERN_END] = TOKEN_REGULAR_EXPRESSION;
    addLineEnds(automaton, START_PATTERN, PATTERN_RETURN, TOKEN_PATTERN_RETURN_NEWLINE);
    addRun(automaton, START_PATTERN, "`\r\n", PATTERN_TEXT, TOKEN_PATTERN_TEXT);
}

// Operators and numbers are tokens as they stand.
constexpr DLGAutomaton::Effect effectOf(std::size_t state, int token) {
    if (state == STRING_WHOLE || state == ASSOCIATION_WHOLE || state == PATTERN_WHOLE) {
        return DLGAutomaton::Effect::quoted;
    }
    if (state == IDENTIFIER) {
        return DLGAutomaton::Effect::word;
    }
    if (token == TOKEN_INVALID) {
        return DLGAutomaton::Effect::invalid;
    }
    if (token == TOKEN_BLANK) {
        return DLGAutomaton::Effect::skip;
    }
    const bool isPlain = token >= TOKEN_EQUAL && token <= TOKEN_REAL_LITERAL;
    return isPlain ? DLGAutomaton::Effect::token : DLGAutomaton::Effect::action;
}

constexpr Automaton makeAutomaton() {
    Automaton automaton;
    for (auto& row : automaton.next) {
        row.fill(DLGAutomaton::noState);
    }
    addText(automaton);
    addComment(automaton);
    addQuotes(automaton);
    for (std::size_t state = 0; state < STATE_COUNT; ++state) {
        automaton.effect[state] = effectOf(state, automaton.token[state]);
    }
    return automaton;
}

constexpr Automaton theAutomaton = makeAutomaton();

const char* quoteKind(int mode) {
    switch (mode) {
        case MODE_STRING:
            return "string.";
        case MODE_ASSOCIATION:
            return "association string.";
        default:
            return "regular expression.";
    }
}

}  // namespace

DLGLexer::DLGLexer(DLGStringInput* input, std::size_t bufferSize)
    : DLGLexer(input, bufferSize, std::cerr) {}

DLGLexer::DLGLexer(DLGStringInput* input, std::size_t bufferSize, std::ostream& errorStream)
    : DLGLexerBase(input, bufferSize, errorStream, theAutomaton) {}

const DLGAutomaton& DLGLexer::automaton() { return theAutomaton; }

DLGLexerBase::Outcome DLGLexer::act(int& number) {
    switch (mode()) {
        case MODE_TEXT:
            return actInText(number);
        case MODE_COMMENT:
            return actInComment(number);
        default:
            return actInQuotes(number);
    }
}

int DLGLexer::wordNumber(std::string_view word) const { return KeywordTable::lookup(word); }

DLGLexerBase::Outcome DLGLexer::actAtEnd(int& number) {
    switch (mode()) {
        case MODE_TEXT:
            number = TOKEN_EOF;
            return Outcome::token;
        case MODE_COMMENT:
            fail("Encountered EOF in comment; comment starts on line " +
                 std::to_string(commentLine_) + ", column " + std::to_string(commentColumn_) + ".");
        default:
            fail(std::string("Encountered EOF in ") + quoteKind(mode()));
    }
}

DLGLexerBase::Outcome DLGLexer::actInText(int number) {
    switch (number) {
        case TOKEN_TAB:
            tab();
            return Outcome::skip;
        case TOKEN_NEWLINE:
            newline();
            return Outcome::skip;
        case TOKEN_STRAY_COMMENT_END:
            fail("Encountered comment end marker outside of comments.");
        case TOKEN_COMMENT_START:
            commentLine_ = line();
            commentColumn_ = beginColumn();
            setMode(MODE_COMMENT);
            return Outcome::skip;
        case TOKEN_STRING_START:
            return openQuotes(MODE_STRING);
        case TOKEN_ASSOCIATION_START:
            return openQuotes(MODE_ASSOCIATION);
        default:
            return openQuotes(MODE_PATTERN);
    }
}

DLGLexerBase::Outcome DLGLexer::actInComment(int number) {
    if (number == TOKEN_COMMENT_END) {
        setMode(MODE_TEXT);
    } else if (number == TOKEN_COMMENT_TAB) {
        tab();
    } else if (number == TOKEN_COMMENT_NEWLINE) {
        newline();
    }
    return Outcome::skip;
}

// The lexeme is the quote with what stands before the first escape or line end.
DLGLexerBase::Outcome DLGLexer::openQuotes(int mode) {
    appendText(lexeme().substr(1));
    setMode(mode);
    return Outcome::more;
}

DLGLexerBase::Outcome DLGLexer::closeQuotes() {
    setMode(MODE_TEXT);
    return Outcome::token;
}

DLGLexerBase::Outcome DLGLexer::replaceEscape(std::string_view replacement) {
    appendText(replacement);
    return Outcome::more;
}

DLGLexerBase::Outcome DLGLexer::actInQuotes(int number) {
    switch (number) {
        case TOKEN_STRING_LITERAL:
        case TOKEN_ASSOCIATION_NAME:
        case TOKEN_REGULAR_EXPRESSION:
            return closeQuotes();
        case TOKEN_STRING_ESCAPED_QUOTE:
            return replaceEscape("\"");
        case TOKEN_ASSOCIATION_ESCAPED_BRACKET:
            return replaceEscape("]");
        case TOKEN_STRING_ESCAPED_BACKSLASH:
        case TOKEN_ASSOCIATION_ESCAPED_BACKSLASH:
            return replaceEscape("\\");
        case TOKEN_STRING_ESCAPED_NEWLINE:
        case TOKEN_ASSOCIATION_ESCAPED_NEWLINE:
            return replaceEscape("\n");
        case TOKEN_STRING_ESCAPED_RETURN:
        case TOKEN_ASSOCIATION_ESCAPED_RETURN:
            return replaceEscape("\r");
        case TOKEN_STRING_ESCAPED_TAB:
        case TOKEN_ASSOCIATION_ESCAPED_TAB:
            tab();
            return replaceEscape("\t");
        case TOKEN_STRING_RETURN_NEWLINE:
        case TOKEN_ASSOCIATION_RETURN_NEWLINE:
        case TOKEN_PATTERN_RETURN_NEWLINE:
            fail(std::string("Encountered newline (\\r\\n) in ") + quoteKind(mode()));
        case TOKEN_STRING_RETURN:
        case TOKEN_ASSOCIATION_RETURN:
        case TOKEN_PATTERN_RETURN:
            fail(std::string("Encountered newline (\\r only) in ") + quoteKind(mode()));
        case TOKEN_STRING_NEWLINE:
        case TOKEN_ASSOCIATION_NEWLINE:
        case TOKEN_PATTERN_NEWLINE:
            fail(std::string("Encountered newline (\\n only) in ") + quoteKind(mode()));
        default:
            appendText(lexeme());
            return Outcome::more;
    }
}
