// Checks a text for what makes it no XML document, where the parser would let it pass.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "repository/SourceText.h"

/// Where a text is cut into pieces that can be parsed one after the other: at a place between
/// elements, and at the start and end tags of all elements that are open there. What stands between
/// two of these is whole elements.
struct XmlCut {
    enum class Kind : std::uint8_t { startTag, endTag, place };

    Kind kind;
    std::size_t begin;  // of the tag, or the place
    std::size_t end;
    std::size_t endTag = 0;  // of a start tag: the number of the cut at its end tag
};

/// One pass over a text before it is parsed, from markup to markup.
///
/// Refuses a document type, a depth of more than deepestNesting elements, text or a second element
/// outside the document element, entities that XML does not define, "<" in attribute values,
/// control characters, and an end inside of anything. Adds the lines of the text on the way. Names,
/// the white space and "=" of attributes and the matching of tags are left to the parser. Used
/// once, on the stack.
class XmlScanner {
public:
    /// How many elements may be open at once.
    static constexpr std::size_t deepestNesting = 2000;

    /// Cuts the text, where it can, into pieces of about this size.
    static constexpr std::size_t usualPieceSize = 65536;

    explicit XmlScanner(SourceText& text, std::size_t pieceSize = usualPieceSize)
        : source_(text), text_(text.view()), pieceSize_(pieceSize) {}

    /// Throws ModelError at the first thing that is wrong.
    void scan();

    /// The number of elements, after scan().
    std::size_t elementCount() const { return elementCount_; }
    /// The cuts in the order of the text, after scan().
    const std::vector<XmlCut>& cuts() const { return cuts_; }

private:
    // What the bytes between two special characters belong to.
    enum class State : std::uint8_t {
        text,
        startTag,
        endTag,
        doubleQuoted,
        singleQuoted,
        comment,
        characterData,
        instruction,
        undecided
    };
    // The start tag of an element that is open, and its number among the cuts if it is one.
    struct OpenElement {
        std::size_t begin;
        std::size_t end;
        std::size_t cut;
    };
    using Transitions = std::array<std::array<State, 7>, 8>;

    static constexpr Transitions makeTransitions();
    void takeBlock(std::size_t base, std::uint64_t bits);
    void take(std::size_t at);
    void open(std::size_t at);
    void openDeclaration(std::size_t at);
    void openElement(std::size_t at);
    void cut(std::size_t at);
    void closeStartTag(std::size_t at);
    void closeEndTag(std::size_t at);
    void closeComment(std::size_t at);
    void closeAfter(std::size_t at, std::string_view end, std::size_t openingLength);
    void checkReference(std::size_t at) const;
    void checkOutside(std::size_t at) const;
    void finish() const;

    SourceText& source_;
    std::string_view text_;
    State state_ = State::text;
    std::size_t start_ = 0;          // of the markup that is open, or of the text after the last
    std::vector<OpenElement> open_;  // from the document element inward
    std::size_t cutCount_ = 0;       // so many of these, the outermost, are cut
    std::vector<XmlCut> cuts_;
    std::size_t pieceSize_;
    std::size_t pieceStart_ = 0;
    std::size_t elementCount_ = 0;
};
