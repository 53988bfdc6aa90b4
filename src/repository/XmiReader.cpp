// The text is checked by XmlScanner and parsed in place, piece by piece. One walk over the
// elements, in document order and without recursion, tells for each element what it is, by the
// frame of the element around it and by its own attributes: the frame around all roots, an object,
// a reference, a value, or something to be skipped. Objects, values and references go to the
// builder.
#include "repository/XmiReader.h"

#include <array>
#include <cstring>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include "repository/ModelBuilder.h"
#include "repository/XmlNames.h"
#include "repository/XmlPieces.h"
#include "repository/XmlScanner.h"

namespace {

// The walk over one document.
class XmiWalk final : public XmlPieceConsumer {
public:
    explicit XmiWalk(ModelBuilder& builder) : builder_(builder) {}

    void takeElement(pugi::xml_node node) override;
    void takeStartTag(pugi::xml_node node) override { enter(node); }
    void takeEndTag() override { leave(); }

private:
    // What an element is to the elements in it.
    enum class FrameKind : std::uint8_t { roots, object, skipped };
    struct Frame {
        FrameKind kind;
        MMObject object = mmNoObject;
    };
    struct Attribute {
        std::uint32_t name;
        const char* value;
    };

    void enter(pugi::xml_node node);
    void leave();
    bool collect(pugi::xml_node node, bool isDeclared);
    void declare(pugi::xml_node node);
    Frame classify(pugi::xml_node node);
    Frame classifyChild(pugi::xml_node node, MMObject owner);
    Frame addRoot(pugi::xml_node node);
    Frame addContained(pugi::xml_node node, MMObject owner, MMKey feature);
    Frame fill(MMObject object);
    const char* mark(XmlRole role) const { return marks_[static_cast<std::size_t>(role)]; }
    std::uint32_t explicitClass();
    [[noreturn]] void failUndeclared(const char* text, const XmlName& name) const;
    bool hasElements(pugi::xml_node node);
    bool isSkipped(pugi::xml_node child);
    TextRef textOf(pugi::xml_node node);
    MMKey feature(std::uint32_t name);
    std::size_t offset(const char* p) const {
        return static_cast<std::size_t>(p - builder_.source().data());
    }
    TextRef ref(const char* text) const {
        return {static_cast<std::uint32_t>(offset(text)),
                static_cast<std::uint32_t>(std::strlen(text))};
    }

    ModelBuilder& builder_;
    XmlNames names_;
    std::vector<Frame> frames_;
    std::uint32_t elementNumber_ = 0;
    std::uint32_t elementName_ = 0;
    // Of the current element: its features, and the last value in each role, or null.
    std::vector<Attribute> features_;
    std::array<const char*, static_cast<std::size_t>(XmlRole::count)> marks_{};
    bool hasAttributes_ = false;
};

// Moves on to the first element from a node on among its siblings; false where there is none.
bool toElement(pugi::xml_node& node) {
    pugi::xml_node_type type = node.type();
    while (type != pugi::node_element && type != pugi::node_null) {
        node = node.next_sibling();
        type = node.type();
    }
    return type == pugi::node_element;
}

void XmiWalk::takeElement(pugi::xml_node node) {
    const std::size_t outer = frames_.size();
    for (;;) {
        enter(node);
        pugi::xml_node next = node.first_child();
        bool isFound = toElement(next);
        while (!isFound) {
            leave();
            if (frames_.size() == outer) {
                return;
            }
            next = node.next_sibling();
            isFound = toElement(next);
            node = isFound ? node : node.parent();
        }
        node = next;
    }
}

void XmiWalk::enter(pugi::xml_node node) {
    elementName_ = names_.find(node.name());
    if (!collect(node, false)) {
        declare(node);
        collect(node, true);
    }
    if (names_.ofElement(names_.name(elementName_)) == NamespaceKind::undeclared) {
        failUndeclared(node.name(), names_.name(elementName_));
    }
    frames_.push_back(classify(node));
}

void XmiWalk::leave() {
    frames_.pop_back();
    names_.leave(frames_.size());
}

// Sorts the attributes of an element by their roles. Returns false at once where these may change
// since the element declares name spaces, unless those are declared.
bool XmiWalk::collect(pugi::xml_node node, bool isDeclared) {
    ++elementNumber_;
    features_.clear();
    marks_.fill(nullptr);
    hasAttributes_ = false;
    pugi::xml_attribute a = node.first_attribute();
    for (const char* text = a.name(); *text != '\0'; text = a.name()) {
        const std::uint32_t number = names_.find(text);
        XmlName& name = names_.name(number);
        const XmlRole role = names_.ofAttribute(name);
        if (role <= XmlRole::declaration && !isDeclared) {
            return false;
        }
        if (std::exchange(name.lastElement, elementNumber_) == elementNumber_) {
            builder_.source().fail(offset(text), "The attribute \"" + std::string(name.text) +
                                                     "\" stands twice in one element.");
        }
        if (role == XmlRole::undeclared) {
            failUndeclared(text, name);
        }
        const char* const value = a.value();
        marks_[static_cast<std::size_t>(role)] = value;
        hasAttributes_ = hasAttributes_ || role != XmlRole::declaration;
        if (role == XmlRole::feature || role == XmlRole::plainId || role == XmlRole::href) {
            features_.push_back({number, value});
        }
        a = a.next_attribute();
    }
    return true;
}

// Puts the declarations of an element in force.
void XmiWalk::declare(pugi::xml_node node) {
    for (pugi::xml_attribute a = node.first_attribute(); !a.empty(); a = a.next_attribute()) {
        XmlName& name = names_.name(names_.find(a.name()));
        if (names_.ofAttribute(name) == XmlRole::declaration) {
            names_.declare(name, a.value(), frames_.size());
        }
    }
}

void XmiWalk::failUndeclared(const char* text, const XmlName& name) const {
    const std::string prefix(name.text.substr(0, name.text.find(':')));
    builder_.source().fail(offset(text),
                           XmlNames::isWellFormed(name.text)
                               ? "The prefix \"" + prefix + "\" is not declared."
                               : "The name \"" + std::string(name.text) + "\" is not well formed.");
}

XmiWalk::Frame XmiWalk::classify(pugi::xml_node node) {
    const XmlName& name = names_.name(elementName_);
    const bool isXmi = names_.ofElement(name) == NamespaceKind::xmi;
    if (frames_.empty() && isXmi && name.local == "XMI") {
        return {FrameKind::roots};
    }
    if (isXmi || (!frames_.empty() && frames_.back().kind == FrameKind::skipped)) {
        return {FrameKind::skipped};
    }
    if (frames_.empty() || frames_.back().kind == FrameKind::roots) {
        return addRoot(node);
    }
    return classifyChild(node, frames_.back().object);
}

// A child element of an object's element is a reference, nothing, a value, or an object.
XmiWalk::Frame XmiWalk::classifyChild(pugi::xml_node node, MMObject owner) {
    const MMKey feature = this->feature(elementName_);
    const char* const href = mark(XmlRole::href);
    const bool isReference = href != nullptr && !hasElements(node);
    if (isReference || mark(XmlRole::xmiIdref) != nullptr) {
        builder_.addReference(owner, feature, ref(isReference ? href : mark(XmlRole::xmiIdref)));
        return {FrameKind::skipped};
    }
    const char* const nil = mark(XmlRole::schemaNil);
    if (nil != nullptr && std::strcmp(nil, "true") == 0) {
        return {FrameKind::skipped};
    }
    if (!hasAttributes_ && !hasElements(node)) {
        const TextRef text = textOf(node);
        if (!text.isAbsent()) {
            builder_.addValue(owner, feature, text);
            return {FrameKind::skipped};
        }
    }
    return addContained(node, owner, feature);
}

XmiWalk::Frame XmiWalk::addRoot(pugi::xml_node node) {
    std::uint32_t number = explicitClass();
    if (number == NameTable::none) {
        number = builder_.classNumber(names_.name(elementName_).local);
    }
    const MMObject object = builder_.addObject(number, offset(node.name()) - 1);
    builder_.addRoot(object);
    return fill(object);
}

XmiWalk::Frame XmiWalk::addContained(pugi::xml_node node, MMObject owner, MMKey feature) {
    std::uint32_t number = explicitClass();
    if (number == NameTable::none) {
        number = builder_.containedClass(ModelTables::classNumber(owner), feature);
    }
    return fill(builder_.addContained(owner, feature, number, offset(node.name()) - 1));
}

// Gives a new object its id and its attributes.
XmiWalk::Frame XmiWalk::fill(MMObject object) {
    const char* const xmiId = mark(XmlRole::xmiId);
    const char* const id = xmiId != nullptr && *xmiId != '\0' ? xmiId : mark(XmlRole::plainId);
    if (id != nullptr && *id != '\0') {
        builder_.setId(object, ref(id));
    }
    for (const Attribute& attribute : features_) {
        builder_.addAttribute(object, feature(attribute.name), ref(attribute.value));
    }
    return {FrameKind::object, object};
}

// The class that the current element names itself, or none.
std::uint32_t XmiWalk::explicitClass() {
    const char* const xmiType = mark(XmlRole::xmiType);
    const char* const type = xmiType != nullptr ? xmiType : mark(XmlRole::schemaType);
    if (type == nullptr) {
        return NameTable::none;
    }
    XmlName& name = names_.name(names_.find(type));
    if (name.classNumber == NameTable::none) {
        const std::string_view local = name.text.substr(name.text.rfind(':') + 1);
        name.classNumber = local.empty() ? NameTable::none : builder_.classNumber(local);
    }
    return name.classNumber;
}

// True where an element holds other elements than those that are skipped.
bool XmiWalk::hasElements(pugi::xml_node node) {
    pugi::xml_node child = node.first_child();
    while (toElement(child)) {
        if (!isSkipped(child)) {
            return true;
        }
        child = child.next_sibling();
    }
    return false;
}

// Whether a child lies in an XMI name space, which it may declare itself.
bool XmiWalk::isSkipped(pugi::xml_node child) {
    const XmlName& name = names_.name(names_.find(child.name()));
    const std::string prefix(name.text.substr(0, name.text.size() - name.local.size()));
    const std::string declaration =
        prefix.empty() ? "xmlns" : "xmlns:" + prefix.substr(0, prefix.size() - 1);
    const pugi::xml_attribute own = child.attribute(declaration.c_str());
    return (own.empty() ? names_.ofElement(name) : XmlNames::kindOf(own.value())) ==
           NamespaceKind::xmi;
}

// The text of an element, absent where there is none but white space. Comments and character data
// may cut it into pieces.
TextRef XmiWalk::textOf(pugi::xml_node node) {
    const pugi::xml_node first = node.first_child();
    if (first.empty()) {
        return TextRef();
    }
    if (first.next_sibling().empty()) {
        return *first.value() == '\0' ? TextRef() : ref(first.value());
    }
    std::string joined;
    for (pugi::xml_node piece = first; !piece.empty(); piece = piece.next_sibling()) {
        joined += piece.type() == pugi::node_element ? "" : piece.value();
    }
    return joined.empty() ? TextRef() : builder_.texts().keep(std::move(joined));
}

MMKey XmiWalk::feature(std::uint32_t number) {
    XmlName& name = names_.name(number);
    if (name.feature == mmUnknownKey) {
        name.feature = builder_.feature(name.local);
    }
    return name.feature;
}

}  // namespace

std::unique_ptr<RepositoryModel> XmiReader::read(SourceText source, const ReadOptions& options,
                                                 std::size_t pieceSize) {
    XmlScanner scanner(source, pieceSize);
    scanner.scan();
    ModelBuilder builder(std::move(source), options.metamodel, ModelBuilder::References::tokens);
    builder.reserve(scanner.elementCount());
    XmiWalk walk(builder);
    XmlPieces(builder.source(), scanner.cuts()).read(walk);
    return builder.finish();
}
