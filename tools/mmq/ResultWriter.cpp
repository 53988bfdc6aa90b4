#include "ResultWriter.h"

#include <iostream>
#include <limits>

#include "Csv.h"
#include "foundation/TextOutput.h"

namespace mmq {

namespace {

bool isFinite(double number) {
    return number - number == 0.0;  // neither infinite nor NaN
}

// A value in JSON; what JSON has no number for is a string.
std::string jsonValue(const MMValue& value) {
    std::string buffer;
    const std::string_view text = value.asText(buffer);
    const bool isQuoted = value.getKind() == MMValue::Kind::text ||
                          (value.getKind() == MMValue::Kind::real && !isFinite(value.getReal()));
    if (!isQuoted) {
        return std::string(text);
    }
    std::string json;
    appendJsonString(json, text);
    return json;
}

}  // namespace

ResultWriter::ResultWriter(const RepositoryModel& model, Format format, bool isSingle)
    : model_(model), format_(format), isSingle_(isSingle) {
    if (format_ == Format::csv) {
        std::cout << "uid,class,name,result\n";
    }
}

std::string ResultWriter::uidOf(MMObject object) const {
    std::string buffer;
    return std::string(model_.uid(object, buffer));
}

std::string ResultWriter::labelOf(MMObject object) const {
    const std::string_view name = model_.name(object);
    return !name.empty() ? std::string(name)
                         : std::string(model_.className(object)) + " " + uidOf(object);
}

void ResultWriter::writeJson(MMObject object, const char* field, const std::string& json) {
    std::string line = "{\"uid\":";
    appendJsonString(line, uidOf(object));
    line += ",\"class\":";
    appendJsonString(line, model_.className(object));
    line += ",\"name\":";
    appendJsonString(line, model_.name(object));
    line += ",\"";
    line += field;
    std::cout << line << "\":" << json << "}\n";
}

void ResultWriter::writeCsv(MMObject object, const std::string& result) {
    std::cout << csvField(uidOf(object)) << ',' << csvField(std::string(model_.className(object)))
              << ',' << csvField(std::string(model_.name(object))) << ',' << csvField(result)
              << '\n';
}

void ResultWriter::writeValue(MMObject object, const MMValue& value) {
    const std::string text(value.asString().view());
    switch (format_) {
        case Format::json:
            writeJson(object, "result", jsonValue(value));
            break;
        case Format::csv:
            writeCsv(object, text);
            break;
        case Format::text:
            std::cout << value.asString().view();
            // A bare true or false does not tell about what.
            if (!isSingle_ && value.getKind() == MMValue::Kind::boolean) {
                std::cout << '\t' << labelOf(object);
            }
            std::cout << '\n';
    }
}

void ResultWriter::writeCollection(MMObject object, const std::vector<MMObject>& result) {
    std::string text;
    const bool isJson = format_ == Format::json;
    const char* const separator =
        isJson ? "," : (isSingle_ && format_ == Format::text ? "\n" : ", ");
    for (const MMObject element : result) {
        text += text.empty() ? "" : separator;
        if (isJson) {
            appendJsonString(text, uidOf(element));
        } else {
            text += format_ == Format::csv ? uidOf(element) : labelOf(element);
        }
    }
    switch (format_) {
        case Format::json:
            writeJson(object, "result", "[" + text + "]");
            break;
        case Format::csv:
            writeCsv(object, text);
            break;
        case Format::text:
            if (!isSingle_) {
                std::cout << labelOf(object) << ": ";
            }
            std::cout << text << (isSingle_ && text.empty() ? "" : "\n");
    }
}

void ResultWriter::writeError(MMObject object, const std::string& sentence) {
    std::string json;
    appendJsonString(json, sentence);
    writeJson(object, "error", json);
}

}  // namespace mmq
