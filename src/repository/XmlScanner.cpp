// The text is looked at in blocks of 64 bytes. For each block the compiler's vector instructions
// find the special characters, those that may change what the text around them is: < > " ' & and
// control characters, ends of lines among them. Their positions become the bits of a number; a
// small state machine takes one bit after the other, so that the bytes between them cost nothing
// more.
#include "repository/XmlScanner.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <string>

namespace {

constexpr std::size_t blockSize = 64;
constexpr std::string_view blanks = " \t\r\n";
constexpr const char* cutShort = "The document ends before its elements do.";

// A bit for each byte of a block, set where it is special. No byte meets two of the conditions,
// so that ^ is as good as |; compilers make vector instructions of the loop only with ^.
std::uint64_t findSpecial(const char* block) {
    std::array<unsigned char, blockSize> flags;
    for (std::size_t i = 0; i < blockSize; ++i) {
        const auto c = static_cast<unsigned char>(block[i]);
        flags[i] = (c < 0x20) ^ (c == '"') ^ (c == '\'') ^ (c == '<') ^ (c == '>') ^ (c == '&');
    }
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < blockSize; i += 8) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, flags.data() + i, 8);
        // Moves the eight lowest bits of the bytes next to each other.
        bits |= ((eight * 0x0102040810204080U) >> 56U) << i;
    }
    return bits;
}

// The special characters, as far as they are told apart.
enum class Kind : std::uint8_t { blank, quote, apostrophe, less, greater, ampersand, other, count };

constexpr Kind kindOf(char c) {
    switch (c) {
        case '\t':
        case '\r':
            return Kind::blank;
        case '"':
            return Kind::quote;
        case '\'':
            return Kind::apostrophe;
        case '<':
            return Kind::less;
        case '>':
            return Kind::greater;
        case '&':
            return Kind::ampersand;
        default:
            return Kind::other;
    }
}

bool isCharacter(std::uint32_t code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xD800) ||
           (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code < 0x110000);
}

// The inside of &...; is one of the five names, or the number of a character.
bool isDefined(std::string_view entity) {
    if (entity.empty() || entity[0] != '#') {
        return entity == "lt" || entity == "gt" || entity == "amp" || entity == "quot" ||
               entity == "apos";
    }
    const bool isHexadecimal = entity.substr(1, 1) == "x";
    entity.remove_prefix(isHexadecimal ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(entity.data(), entity.data() + entity.size(), code,
                                              isHexadecimal ? 16 : 10);
    return error == std::errc() && end == entity.data() + entity.size() && isCharacter(code);
}

}  // namespace

void XmlScanner::scan() {
    std::array<char, blockSize> last;
    for (std::size_t base = 0; base < text_.size(); base += blockSize) {
        const char* block = text_.data() + base;
        if (text_.size() - base < blockSize) {
            last.fill(' ');
            std::memcpy(last.data(), block, text_.size() - base);
            block = last.data();
        }
        takeBlock(base, findSpecial(block));
    }
    finish();
}

// The state after a special character, or undecided where the character does more.
constexpr XmlScanner::Transitions XmlScanner::makeTransitions() {
    Transitions result{};
    const auto at = [&result](State state, Kind kind) -> State& {
        return result[static_cast<std::size_t>(state)][static_cast<std::size_t>(kind)];
    };
    for (std::size_t state = 0; state < result.size(); ++state) {
        result[state].fill(static_cast<State>(state));
        at(static_cast<State>(state), Kind::other) = State::undecided;
    }
    for (const State state : {State::text, State::doubleQuoted, State::singleQuoted}) {
        at(state, Kind::less) = at(state, Kind::ampersand) = State::undecided;
    }
    at(State::startTag, Kind::quote) = State::doubleQuoted;
    at(State::startTag, Kind::apostrophe) = State::singleQuoted;
    at(State::startTag, Kind::less) = at(State::startTag, Kind::greater) = State::undecided;
    at(State::doubleQuoted, Kind::quote) = State::startTag;
    at(State::singleQuoted, Kind::apostrophe) = State::startTag;
    for (const Kind kind :
         {Kind::quote, Kind::apostrophe, Kind::less, Kind::greater, Kind::ampersand}) {
        at(State::endTag, kind) = State::undecided;
    }
    for (const State state : {State::comment, State::characterData, State::instruction}) {
        at(state, Kind::greater) = State::undecided;
    }
    return result;
}

// Takes the special characters of a block. Most of them, such as the quotes around values, do no
// more than change the state, which a table tells.
void XmlScanner::takeBlock(std::size_t base, std::uint64_t bits) {
    static constexpr Transitions transitions = makeTransitions();
    State state = state_;
    for (; bits != 0; bits &= bits - 1) {
        const std::size_t at = base + static_cast<std::size_t>(std::countr_zero(bits));
        const auto kind = static_cast<std::size_t>(kindOf(text_[at]));
        const State next = transitions[static_cast<std::size_t>(state)][kind];
        if (next != State::undecided) {
            state = next;
        } else {
            state_ = state;
            take(at);
            state = state_;
        }
    }
    state_ = state;
}

// Takes a special character that does more.
void XmlScanner::take(std::size_t at) {
    const char c = text_[at];
    if (c == '\n') {
        source_.addLine(at + 1);
        return;
    }
    if (static_cast<unsigned char>(c) < 0x20) {
        source_.fail(at, "A control character cannot stand in XML.");
    }
    if (c == '&' && state_ != State::endTag) {
        checkReference(at);
        return;
    }
    switch (state_) {
        case State::text:
            open(at);
            break;
        case State::startTag:
            closeStartTag(at);
            break;
        case State::endTag:
            closeEndTag(at);
            break;
        case State::comment:
            closeComment(at);
            break;
        case State::characterData:
            closeAfter(at, "]]>", 9);
            break;
        case State::instruction:
            closeAfter(at, "?>", 2);
            break;
        case State::doubleQuoted:
        case State::singleQuoted:
            source_.fail(at, "\"<\" stands in the value of an attribute.");
        case State::undecided:
            break;
    }
}

void XmlScanner::open(std::size_t at) {
    if (open_.empty()) {
        checkOutside(at);
    }
    start_ = at;
    const char next = at + 1 < text_.size() ? text_[at + 1] : '\0';
    if (next == '!') {
        openDeclaration(at);
    } else if (next == '?') {
        if (at != 0 && text_.substr(at, 5) == "<?xml" && at + 5 < text_.size() &&
            blanks.find(text_[at + 5]) != std::string_view::npos) {
            source_.fail(at, "An XML declaration stands only at the beginning.");
        }
        state_ = State::instruction;
    } else if (next == '/') {
        state_ = State::endTag;
    } else {
        openElement(at);
    }
}

void XmlScanner::openDeclaration(std::size_t at) {
    const std::string_view rest = text_.substr(at, 9);
    if (rest.substr(0, 4) == "<!--") {
        state_ = State::comment;
    } else if (rest == "<![CDATA[" && !open_.empty()) {
        state_ = State::characterData;
    } else if (rest == "<!DOCTYPE") {
        source_.fail(at, "A document type declaration is not accepted.");
    } else if (at + rest.size() == text_.size()) {
        source_.fail(text_.size(), cutShort);
    } else {
        source_.fail(at, "\"<!\" begins neither a comment nor character data.");
    }
}

void XmlScanner::openElement(std::size_t at) {
    if (open_.empty() && elementCount_ != 0) {
        source_.fail(at, "A second element follows the document element.");
    }
    if (open_.size() == deepestNesting) {
        source_.fail(
            at, "Elements are nested deeper than " + std::to_string(deepestNesting) + " levels.");
    }
    if (at - pieceStart_ >= pieceSize_ && !open_.empty()) {
        cut(at);
    }
    ++elementCount_;
    state_ = State::startTag;
}

// The elements that are open are cut as well, as far as they are not.
void XmlScanner::cut(std::size_t at) {
    for (; cutCount_ < open_.size(); ++cutCount_) {
        OpenElement& element = open_[cutCount_];
        element.cut = cuts_.size();
        cuts_.push_back({XmlCut::Kind::startTag, element.begin, element.end});
    }
    cuts_.push_back({XmlCut::Kind::place, at, at});
    pieceStart_ = at;
}

void XmlScanner::closeStartTag(std::size_t at) {
    if (text_[at] == '<') {
        source_.fail(at, "\"<\" stands inside a tag.");
    }
    if (text_[at - 1] != '/') {
        open_.push_back({start_, at + 1, 0});
    }
    state_ = State::text;
    start_ = at + 1;
}

void XmlScanner::closeEndTag(std::size_t at) {
    if (text_[at] != '>') {
        source_.fail(at, "An end tag holds more than a name.");
    }
    if (open_.empty()) {
        source_.fail(start_, "An end tag has no start tag.");
    }
    if (cutCount_ == open_.size()) {
        cuts_[open_.back().cut].endTag = cuts_.size();
        cuts_.push_back({XmlCut::Kind::endTag, start_, at + 1});
        --cutCount_;
    }
    open_.pop_back();
    state_ = State::text;
    start_ = at + 1;
}

void XmlScanner::closeComment(std::size_t at) {
    const std::size_t opening = start_;
    closeAfter(at, "-->", 4);
    if (state_ == State::text && text_.find("--", opening + 4) != at - 2) {
        source_.fail(opening, "A comment holds \"--\".");
    }
}

// Ends a comment, character data or an instruction at a ">" if it completes their end.
void XmlScanner::closeAfter(std::size_t at, std::string_view end, std::size_t openingLength) {
    if (text_[at] == '>' && at + 1 >= start_ + openingLength + end.size() &&
        text_.substr(at + 1 - end.size(), end.size()) == end) {
        state_ = State::text;
        start_ = at + 1;
    }
}

// An entity or a character reference begins at "&".
void XmlScanner::checkReference(std::size_t at) const {
    constexpr std::size_t longest = 64;
    const std::string_view rest = text_.substr(at + 1, longest);
    const std::size_t length = rest.find_first_of("; \t\r\n<>&\"'");
    if (length == std::string_view::npos || rest[length] != ';') {
        source_.fail(at, "\"&\" stands alone; it is written \"&amp;\".");
    }
    if (!isDefined(rest.substr(0, length))) {
        source_.fail(
            at, "The entity \"&" + std::string(rest.substr(0, length)) + ";\" is not defined.");
    }
}

// Between the markup outside the document element stands nothing but white space.
void XmlScanner::checkOutside(std::size_t at) const {
    const std::size_t found = text_.find_first_not_of(blanks, start_);
    if (found < at) {
        source_.fail(found, start_ == 0 ? "The document is neither XML nor a JSON object."
                                        : "Text stands outside the document element.");
    }
}

void XmlScanner::finish() const {
    if (!open_.empty() || state_ != State::text) {
        source_.fail(text_.size(), cutShort);
    }
    checkOutside(text_.size());
    if (elementCount_ == 0) {
        source_.fail(text_.size(), "The document has no element.");
    }
}
