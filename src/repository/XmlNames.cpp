#include "repository/XmlNames.h"

#include "repository/SourceText.h"

namespace {

constexpr std::string_view schemaInstanceUri = "http://www.w3.org/2001/XMLSchema-instance";

bool isXmi(std::string_view uri) {
    constexpr std::string_view current = "http://www.omg.org/spec/XMI";
    return uri == "http://www.omg.org/XMI" || uri == "http://schema.omg.org/spec/XMI/2.0" ||
           uri == "http://schema.omg.org/spec/XMI/2.1" || uri == current ||
           (uri.substr(0, current.size()) == current && uri[current.size()] == '/');
}

// The role of an attribute of XMI or the schema instance.
XmlRole foreignRole(bool isXmi, std::string_view local) {
    if (local == "type") {
        return isXmi ? XmlRole::xmiType : XmlRole::schemaType;
    }
    if (isXmi) {
        return local == "id"      ? XmlRole::xmiId
               : local == "idref" ? XmlRole::xmiIdref
                                  : XmlRole::foreign;
    }
    return local == "nil" ? XmlRole::schemaNil : XmlRole::foreign;
}

// The role of an attribute without a prefix, which belongs to no name space.
XmlRole plainRole(std::string_view name) {
    return name == "id"      ? XmlRole::plainId
           : name == "href"  ? XmlRole::href
           : name == "xmlns" ? XmlRole::declaration
                             : XmlRole::feature;
}

}  // namespace

bool XmlNames::isWellFormed(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ||
           (colon != 0 && colon + 1 != name.size() && colon == name.rfind(':'));
}

XmlNames::XmlNames() {
    static constexpr char nothing[1 + SourceText::slack] = "";
    names_.emplace_back().text = nothing;  // nothing precedes the first name
    numbers_.intern("");
    prefixNumber("");
    kinds_[noPrefix] = NamespaceKind::model;
    kinds_[prefixNumber("xml")] = NamespaceKind::model;
    kinds_[prefixNumber("xmlns")] = NamespaceKind::declaration;
}

NamespaceKind XmlNames::kindOf(std::string_view uri) {
    if (isXmi(uri)) {
        return NamespaceKind::xmi;
    }
    return uri == schemaInstanceUri ? NamespaceKind::schemaInstance : NamespaceKind::model;
}

std::uint32_t XmlNames::findOther(const char* text) {
    const std::string_view name(text);
    const std::uint32_t number = numbers_.intern(name);
    if (number == names_.size()) {
        XmlName added;
        added.text = name;
        added.local = name;
        const std::size_t colon = name.find(':');
        if (colon != std::string_view::npos) {
            added.local = name.substr(colon + 1);
            // What is not well formed counts as a prefix that nobody can declare.
            added.prefix = prefixNumber(isWellFormed(name) ? name.substr(0, colon) : name);
        }
        names_.push_back(added);
    }
    recent_[recentSlot(text)] = number;
    return number;
}

std::uint32_t XmlNames::prefixNumber(std::string_view prefix) {
    const std::uint32_t number = prefixes_.intern(prefix);
    if (number == kinds_.size()) {
        kinds_.push_back(NamespaceKind::undeclared);
    }
    return number;
}

XmlRole XmlNames::findRole(const XmlName& name) const {
    if (name.prefix == noPrefix) {
        return plainRole(name.local);
    }
    switch (kinds_[name.prefix]) {
        case NamespaceKind::undeclared:
            return XmlRole::undeclared;
        case NamespaceKind::model:
            return XmlRole::feature;
        case NamespaceKind::xmi:
            return foreignRole(true, name.local);
        case NamespaceKind::schemaInstance:
            return foreignRole(false, name.local);
        case NamespaceKind::declaration:
            break;
    }
    return XmlRole::declaration;
}

void XmlNames::declare(const XmlName& attribute, std::string_view uri, std::size_t depth) {
    const std::uint32_t prefix =
        attribute.prefix == noPrefix ? noPrefix : prefixNumber(attribute.local);
    hidden_.push_back({prefix, kinds_[prefix], depth});
    kinds_[prefix] = kindOf(uri);
    ++version_;
}

void XmlNames::restore() {
    kinds_[hidden_.back().prefix] = hidden_.back().kind;
    hidden_.pop_back();
    ++version_;
}
