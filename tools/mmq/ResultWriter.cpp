#include "ResultWriter.h"

#include "Csv.h"
#include "Json.h"

namespace mmq {

ResultWriter::ResultWriter(const RepositoryModel& model, Format format, bool isSingle,
                           std::ostream& stream)
    : model_(model), format_(format), isSingle_(isSingle), stream_(stream) {}

void ResultWriter::writeHeader() {
    if (format_ == Format::csv) {
        stream_ << "uid,class,name,result\n";
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

void ResultWriter::writeJson(MMObject object, const char* field, const std::string& json,
                             const std::string& why) {
    stream_ << "{\"uid\":" << jsonString(uidOf(object))
            << ",\"class\":" << jsonString(model_.className(object))
            << ",\"name\":" << jsonString(model_.name(object)) << ",\"" << field << "\":" << json;
    if (!why.empty()) {
        stream_ << ",\"why\":" << why;
    }
    stream_ << "}\n";
}

void ResultWriter::writeCsv(MMObject object, const std::string& result) {
    stream_ << csvField(uidOf(object)) << ',' << csvField(std::string(model_.className(object)))
            << ',' << csvField(std::string(model_.name(object))) << ',' << csvField(result) << '\n';
}

void ResultWriter::writeValue(MMObject object, const MMValue& value, const std::string& why) {
    const std::string text(value.asString().view());
    switch (format_) {
        case Format::json:
            writeJson(object, "result", jsonValue(value), why);
            break;
        case Format::csv:
            writeCsv(object, text);
            break;
        default:
            stream_ << value.asString().view();
            // A bare true or false does not tell about what.
            if (!isSingle_ && value.getKind() == MMValue::Kind::boolean) {
                stream_ << '\t' << labelOf(object);
            }
            stream_ << '\n' << why;
    }
}

void ResultWriter::writeCollection(MMObject object, const std::vector<MMObject>& result,
                                   const std::string& why) {
    std::string text;
    const bool isJson = format_ == Format::json;
    const char* const separator =
        isJson ? "," : (isSingle_ && format_ == Format::text ? "\n" : ", ");
    for (const MMObject element : result) {
        text += text.empty() ? "" : separator;
        if (isJson) {
            text += jsonString(uidOf(element));
        } else {
            text += format_ == Format::csv ? uidOf(element) : labelOf(element);
        }
    }
    switch (format_) {
        case Format::json:
            writeJson(object, "result", "[" + text + "]", why);
            break;
        case Format::csv:
            writeCsv(object, text);
            break;
        default:
            if (!isSingle_) {
                stream_ << labelOf(object) << ": ";
            }
            stream_ << text << (isSingle_ && text.empty() ? "" : "\n") << why;
    }
}

void ResultWriter::writeError(MMObject object, const std::string& sentence,
                              const std::string& why) {
    if (format_ == Format::json) {
        writeJson(object, "error", jsonString(sentence), why);
    } else if (format_ == Format::text) {
        stream_ << why;
    }
}

}  // namespace mmq
