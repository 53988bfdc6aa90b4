#include "SyntheticDocuments.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace synthetic {

namespace {

void append(std::string& text, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) {
        text.append(part);
    }
}

/// Writes the elements of XMI, indented.
class XmiWriter {
public:
    std::string write(const Model& model) {
        append(text_, {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<uml:Model "
                       "xmi:version=\"20131001\" "
                       "xmlns:xmi=\"http://www.omg.org/spec/XMI/20131001\" "
                       "xmlns:uml=\"http://www.eclipse.org/uml2/5.0.0/UML\" "
                       "xmi:id=\"_model\" name=\"Synthetic\">\n"});
        for (const Package& package : model.packages()) {
            writePackage(package);
        }
        return text_ + "</uml:Model>\n";
    }

private:
    void begin(std::string_view indent, std::string_view tag, std::string_view type,
               std::string_view id) {
        append(text_, {indent, "<", tag, " xmi:type=\"uml:", type, "\" xmi:id=\"", id, "\""});
    }

    void writePackage(const Package& package) {
        begin("  ", "packagedElement", "Package", package.id);
        append(text_, {" name=\"", package.name, "\">\n"});
        for (const Element& element : package.elements) {
            writeElement(element);
        }
        append(text_, {"  </packagedElement>\n"});
    }

    void writeElement(const Element& element) {
        const bool isClass = element.kind == Element::Kind::classKind;
        begin("    ", "packagedElement", isClass ? "Class" : "DataType", element.id);
        append(text_, {" name=\"", element.name, "\" visibility=\"public\"",
                       element.isAbstract ? " isAbstract=\"true\"" : "", ">\n"});
        for (std::size_t i = 0; i < element.generals.size(); ++i) {
            begin("      ", "generalization", "Generalization", element.id);
            text_.pop_back();  // the id of its owner with a number is its own
            append(text_,
                   {".", std::to_string(i), "\" general=\"", element.generals[i]->id, "\"/>\n"});
        }
        for (const Operation& operation : element.operations) {
            writeOperation(operation);
        }
        append(text_, {"    </packagedElement>\n"});
    }

    void writeOperation(const Operation& operation) {
        begin("      ", "ownedOperation", "Operation", operation.id);
        append(text_, {" name=\"", operation.name, "\" visibility=\"", text(operation.visibility),
                       "\" isQuery=\"", operation.isQuery ? "true" : "false",
                       "\" concurrency=\"sequential\">\n"});
        for (const Parameter& parameter : operation.parameters) {
            begin("        ", "ownedParameter", "Parameter", parameter.id);
            append(text_,
                   {" name=\"", parameter.name, "\" visibility=\"public\" type=\"",
                    parameter.type->id, "\" isOrdered=\"true\" isUnique=\"false\" direction=\"",
                    text(parameter.direction), "\" effect=\"read\"/>\n"});
        }
        append(text_, {"      </ownedOperation>\n"});
    }

    std::string text_;
};

/// Writes records and lists in the notation of JSON or of Lua, which differ in how a field is named
/// and in the brackets of lists. No text that the model holds needs an escape.
class RecordWriter {
public:
    struct Notation {
        std::string_view beforeKey, afterKey, beginList, endList;
    };
    static constexpr Notation json = {"\"", "\":", "[", "]"};
    static constexpr Notation lua = {"", "=", "{", "}"};

    explicit RecordWriter(const Notation& notation) : notation_(notation) {}

    std::string& text() { return text_; }

    void writeElement(const Element& element) {
        const bool isClass = element.kind == Element::Kind::classKind;
        text_ += "{";
        field("class", isClass ? "Class" : "DataType");
        field("id", element.id);
        field("name", element.name);
        field("isAbstract", element.isAbstract ? "true" : "false");
        beginList("generalization");
        for (const Element* const general : element.generals) {
            append(text_, {"\"", general->id, "\","});
        }
        endList();
        beginList("ownedOperation");
        for (const Operation& operation : element.operations) {
            writeOperation(operation);
        }
        endList();
        endRecord();
    }

    void field(std::string_view key, std::string_view value) {
        append(text_, {notation_.beforeKey, key, notation_.afterKey, "\"", value, "\","});
    }
    void beginList(std::string_view key) {
        append(text_, {notation_.beforeKey, key, notation_.afterKey, notation_.beginList});
    }
    void endList() { end(notation_.endList); }
    void endRecord() { end("}"); }

private:
    void writeOperation(const Operation& operation) {
        text_ += "{";
        field("name", operation.name);
        field("visibility", synthetic::text(operation.visibility));
        beginList("ownedParameter");
        for (const Parameter& parameter : operation.parameters) {
            text_ += "{";
            field("name", parameter.name);
            field("direction", synthetic::text(parameter.direction));
            field("type", parameter.type->id);
            endRecord();
        }
        endList();
        endRecord();
    }

    // A comma is written behind everything, and the last one taken back.
    void end(std::string_view bracket) {
        if (text_.back() == ',') {
            text_.pop_back();
        }
        append(text_, {bracket, ","});
    }

    Notation notation_;
    std::string text_;
};

}  // namespace

std::string xmiDocument(const Model& model) { return XmiWriter().write(model); }

std::string jsonDocument(const Model& model) {
    RecordWriter writer(RecordWriter::json);
    writer.text() += "{";
    writer.beginList("packagedElement");
    for (const Package& package : model.packages()) {
        writer.text() += "{";
        writer.field("name", package.name);
        writer.beginList("packagedElement");
        for (const Element& element : package.elements) {
            writer.writeElement(element);
        }
        writer.endList();
        writer.endRecord();
    }
    writer.endList();
    writer.endRecord();
    writer.text().pop_back();
    return std::move(writer.text());
}

std::string luaChunk(const Package& package) {
    RecordWriter writer(RecordWriter::lua);
    append(writer.text(), {"package_{name=\"", package.name, "\"}\n"});
    for (const Element& element : package.elements) {
        writer.text() += "element";
        writer.writeElement(element);
        writer.text().back() = '\n';
    }
    return std::move(writer.text());
}

}  // namespace synthetic
