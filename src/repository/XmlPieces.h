// Parses a text of XML piece by piece, so that no more than a piece is in memory as a tree.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "repository/SourceText.h"
#include "repository/XmlScanner.h"

/// Takes the elements of a document in order. The nodes are gone after each call; their names and
/// values stay, in the text.
class XmlPieceConsumer {
public:
    XmlPieceConsumer() = default;
    XmlPieceConsumer(const XmlPieceConsumer&) = delete;
    XmlPieceConsumer& operator=(const XmlPieceConsumer&) = delete;

    /// An element with everything in it.
    virtual void takeElement(pugi::xml_node element) = 0;
    /// The start tag of an element, as an element without anything in it: elements that it holds
    /// follow, and its end tag. It is the document element, or has an attribute, declarations
    /// aside, and none that is called "href": so the consumer need not know what it holds.
    virtual void takeStartTag(pugi::xml_node element) = 0;
    virtual void takeEndTag() = 0;

protected:
    ~XmlPieceConsumer() = default;
};

/// The pieces of a text that was scanned and cut. Parses them in place: what has been read of the
/// text is another one afterwards. Used once, on the stack.
class XmlPieces {
public:
    XmlPieces(SourceText& source, const std::vector<XmlCut>& cuts) : source_(source), cuts_(cuts) {}

    /// Throws ModelError where the text is not well formed.
    void read(XmlPieceConsumer& consumer);

private:
    void readElements(std::size_t begin, std::size_t end, XmlPieceConsumer& consumer);
    void readStartTag(const XmlCut& tag, XmlPieceConsumer& consumer);
    void readEndTag(const XmlCut& tag, XmlPieceConsumer& consumer);
    void parse(std::size_t begin, std::size_t end);
    std::string_view textOf(const XmlCut& tag) const {
        return source_.view().substr(tag.begin, tag.end - tag.begin);
    }

    SourceText& source_;
    const std::vector<XmlCut>& cuts_;
    pugi::xml_document document_;
    std::vector<const char*> names_;  // of the open elements that are cut
};
