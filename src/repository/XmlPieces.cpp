#include "repository/XmlPieces.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

const char* describe(pugi::xml_parse_status status) {
    switch (status) {
        case pugi::status_end_element_mismatch:
            return "The end tag does not name the element that is open.";
        case pugi::status_bad_attribute:
            return "An attribute is not well formed.";
        case pugi::status_bad_start_element:
            return "A start tag is not well formed.";
        case pugi::status_bad_end_element:
            return "An end tag is not well formed.";
        case pugi::status_bad_pi:
            return "A processing instruction is not well formed.";
        default:
            return "The document is not well-formed XML.";
    }
}

// Whether what an element holds has no say in what it is: see XmlPieceConsumer::takeStartTag().
bool standsAlone(std::string_view tag) {
    bool hasAttribute = false;
    for (std::size_t equals = tag.find('='); equals != std::string_view::npos;
         equals = tag.find('=')) {
        const std::size_t start =
            tag.find_last_of(" \t\r\n", tag.find_last_not_of(" \t\r\n", equals - 1));
        const std::string_view name = tag.substr(start + 1, equals - start - 1);
        const std::size_t opening = tag.find_first_of("\"'", equals);
        if (name.starts_with("href") || opening == std::string_view::npos) {
            return false;
        }
        hasAttribute = hasAttribute || !name.starts_with("xmlns");
        tag.remove_prefix(std::min(tag.size(), tag.find(tag[opening], opening + 1)));
    }
    return hasAttribute;
}

}  // namespace

void XmlPieces::read(XmlPieceConsumer& consumer) {
    std::size_t begin = 0;
    for (std::size_t number = 0; number < cuts_.size(); ++number) {
        const XmlCut& cut = cuts_[number];
        const bool isInner = cut.kind == XmlCut::Kind::startTag && !names_.empty();
        if (isInner && !standsAlone(textOf(cut))) {
            number = cut.endTag;  // the element stays whole, in one piece with what precedes it
            continue;
        }
        readElements(begin, cut.begin, consumer);
        if (cut.kind == XmlCut::Kind::startTag) {
            readStartTag(cut, consumer);
        } else if (cut.kind == XmlCut::Kind::endTag) {
            readEndTag(cut, consumer);
        }
        begin = cut.end;
    }
    readElements(begin, source_.size(), consumer);
}

void XmlPieces::readElements(std::size_t begin, std::size_t end, XmlPieceConsumer& consumer) {
    parse(begin, end);
    for (const pugi::xml_node node : document_) {
        if (node.type() == pugi::node_element) {
            consumer.takeElement(node);
        }
    }
}

// The tag is parsed as that of an empty element, for which it needs one byte more.
void XmlPieces::readStartTag(const XmlCut& tag, XmlPieceConsumer& consumer) {
    char* const end = source_.data() + tag.end;
    const char next = std::exchange(*end, '>');
    end[-1] = '/';
    parse(tag.begin, tag.end + 1);
    *end = next;
    names_.push_back(document_.first_child().name());
    consumer.takeStartTag(document_.first_child());
}

void XmlPieces::readEndTag(const XmlCut& tag, XmlPieceConsumer& consumer) {
    std::string_view name = textOf(tag);
    name = name.substr(2, name.find_last_not_of(" \t\r\n>") - 1);
    if (name != names_.back()) {
        source_.fail(tag.begin, describe(pugi::status_end_element_mismatch));
    }
    names_.pop_back();
    consumer.takeEndTag();
}

void XmlPieces::parse(std::size_t begin, std::size_t end) {
    const pugi::xml_parse_result result = document_.load_buffer_inplace(
        source_.data() + begin, end - begin, pugi::parse_default | pugi::parse_fragment,
        pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory) {
        throw std::bad_alloc();
    }
    if (result.status != pugi::status_ok) {
        const std::size_t at = begin + static_cast<std::size_t>(result.offset);
        source_.fail(std::min(at, source_.size()), describe(result.status));
    }
}
