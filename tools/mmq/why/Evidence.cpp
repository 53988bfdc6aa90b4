#include "why/Evidence.h"

#include <algorithm>

#include "Json.h"
#include "SourceFile.h"
#include "lint/Escaping.h"

namespace mmq {

namespace {

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces) {
        text += piece;
    }
    return text;
}

std::string uidOf(const RepositoryModel& model, MMObject object) {
    std::string buffer;
    return std::string(model.uid(object, buffer));
}

// So many bytes of a text, but no part of a character.
std::string_view beginningOf(std::string_view text, std::size_t longest) {
    std::size_t length = std::min(text.size(), longest);
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
        --length;
    }
    return text.substr(0, length);
}

// A text in quotes, cut where it is long.
std::string excerpt(std::string_view text) {
    constexpr std::size_t longest = 60;
    const std::string_view shown = beginningOf(text, longest);
    const std::string result = jsonString(shown);
    return shown.size() < text.size() ? result + "..." : result;
}

/// Writes evidence for people.
class TextForm {
public:
    TextForm(const ExpressionText& text, const RepositoryModel& model, const std::string& indent)
        : text_(text), model_(model), indent_(indent) {}

    // Why something fails is told where it happens, in the last of the lines that fail.
    void write(const EvidenceLine& line, bool isLastFailure) {
        const std::size_t place = text_.offsetOf(line.span.line, line.span.column);
        const std::size_t point = place <= text_.text().size() ? place : line.span.offset;
        const MarkedLine marked =
            markAt(text_.text(), point, line.span.offset, line.span.endOffset);
        if (marked.line != lastLine_) {
            lastLine_ = marked.line;
            result_ += indent_ + marked.line + "\n";
        }
        tellsFailure_ = isLastFailure;
        result_ += indent_ + marked.marks + " " + told(line) + "\n";
    }

    void writeCut() {
        result_ += indent_ + (result_.empty() ? "A limit was reached before there was evidence.\n"
                                              : "There is more than is shown here.\n");
    }

    std::string release() { return std::move(result_); }

private:
    std::string told(const EvidenceLine& line) const {
        switch (line.kind) {
            case EvidenceLine::Kind::binding:
                return joined(
                    {valueText(line.value), " for ", line.variable, " = ", fullName(line.object)});
            case EvidenceLine::Kind::elements:
                return line.objects.empty()
                           ? valueText(line.value) + ": there is no object"
                           : joined({valueText(line.value), " for each of ", list(line.objects)});
            case EvidenceLine::Kind::subject:
                return joined({"for ", line.variable, " = ", fullName(line.object)});
            case EvidenceLine::Kind::path:
                return pathText(line.way);
            case EvidenceLine::Kind::step:
                return joined({"reached ", valueText(line.value)});
            default:
                return valueText(line.value);
        }
    }

    std::string pathText(const PathWay& way) const {
        std::string text = way.links.empty() ? "" : shortName(way.links.front().from);
        for (std::size_t i = 0; i < way.links.size(); ++i) {
            const PathLink& link = way.links[i];
            if (way.leftOut > 0 && i == way.gap) {
                text += joined({" ... ", std::to_string(way.leftOut), " more steps ... ",
                                shortName(link.from)});
            }
            text += joined({" -[", link.association, "]-> ", shortName(link.to)});
        }
        return text;
    }

    std::string valueText(const PartValue& value) const {
        return std::visit([this](const auto& content) { return this->contentText(content); },
                          value);
    }
    static std::string contentText(const MMValue& value) {
        return value.getKind() == MMValue::Kind::text ? excerpt(value.getText())
                                                      : std::string(value.asString().view());
    }
    std::string contentText(const PartFailure& failure) const {
        return tellsFailure_ ? "fails: " + failure.sentence : "fails";
    }
    std::string contentText(const std::vector<MMObject>& objects) const { return list(objects); }
    std::string contentText(const MMObject& object) const {
        return object != mmNoObject ? fullName(object) : "no object";
    }
    static std::string contentText(const std::vector<std::string>& texts) {
        return counted(texts.size(), "text", [&texts](std::size_t i) { return excerpt(texts[i]); });
    }

    std::string list(const std::vector<MMObject>& objects) const {
        return counted(objects.size(), "object",
                       [&](std::size_t i) { return shortName(objects[i]); });
    }

    // How many there are, and the first of them.
    template <class NameOf>
    static std::string counted(std::size_t count, const std::string& what, const NameOf& nameOf) {
        constexpr std::size_t mostListed = 5;
        std::string text = count == 0 ? "no " : std::to_string(count) + " ";
        text += what + (count == 1 ? "" : "s");
        for (std::size_t i = 0; i < std::min(count, mostListed); ++i) {
            text += (i == 0 ? ": " : ", ") + nameOf(i);
        }
        return count > mostListed ? text + ", ..." : text;
    }

    std::string shortName(MMObject object) const {
        const std::string_view name = model_.name(object);
        return onOneLine(name.empty()
                             ? joined({model_.className(object), " ", uidOf(model_, object)})
                             : std::string(name));
    }
    std::string fullName(MMObject object) const {
        const std::string_view name = model_.name(object);
        const std::string uid = uidOf(model_, object);
        const std::string_view className = model_.className(object);
        return onOneLine(name.empty() ? joined({className, " ", uid})
                                      : joined({className, " ", name, " (", uid, ")"}));
    }

    const ExpressionText& text_;
    const RepositoryModel& model_;
    const std::string& indent_;
    std::string lastLine_;
    bool tellsFailure_ = false;
    std::string result_;
};

/// Writes evidence for programs.
class JsonForm {
public:
    JsonForm(const ExpressionText& text, const RepositoryModel& model)
        : expression_(text), text_(text.text()), model_(model) {}

    std::string formOf(const EvidenceLine& line) const {
        const SourceSpan& span = line.span;
        const MessagePlace place = expression_.place(span.line, span.column);
        return joined(
            {"{\"line\":", std::to_string(place.line), ",\"column\":", std::to_string(place.column),
             ",\"text\":", partText(text_.substr(span.offset, span.endOffset - span.offset)), ",",
             members(line), "}"});
    }

private:
    std::string members(const EvidenceLine& line) const {
        const std::string value = valueMember(line.value);
        switch (line.kind) {
            case EvidenceLine::Kind::binding:
                return joined({value, ",", variable(line)});
            case EvidenceLine::Kind::subject:
                return variable(line);
            case EvidenceLine::Kind::elements:
                return joined({value, ",\"objects\":", uids(line.objects)});
            case EvidenceLine::Kind::step:
                return joined(
                    {"\"reached\":", contentForm(std::get<std::vector<MMObject>>(line.value))});
            case EvidenceLine::Kind::path:
                return joined({"\"path\":", links(line.way)});
            default:
                return value;
        }
    }

    std::string variable(const EvidenceLine& line) const {
        return joined(
            {"\"variable\":", jsonString(line.variable), ",\"object\":", uid(line.object)});
    }

    std::string uid(MMObject object) const {
        return object != mmNoObject ? jsonString(uidOf(model_, object)) : "null";
    }
    static std::string partText(std::string_view part) {
        constexpr std::size_t longest = 1000;
        const std::string_view shown = beginningOf(part, longest);
        return shown.size() < part.size() ? jsonString(std::string(shown) + "...")
                                          : jsonString(shown);
    }

    // A list of which so many are left out before its entry `gap`.
    template <class Form>
    static std::string list(std::size_t count, std::size_t gap, std::size_t leftOut,
                            const Form& formOf) {
        std::string json = "[";
        for (std::size_t i = 0; i <= count; ++i) {
            if (leftOut > 0 && i == gap) {
                json += joined({i == 0 ? "" : ",", "{\"leftOut\":", std::to_string(leftOut), "}"});
            }
            json += i == count ? "]" : joined({json.size() == 1 ? "" : ",", formOf(i)});
        }
        return json;
    }
    template <class Form>
    static std::string list(std::size_t count, const Form& formOf) {
        constexpr std::size_t mostListed = 100;
        const std::size_t shown = std::min(count, mostListed);
        return list(shown, shown, count - shown, formOf);
    }
    std::string uids(const std::vector<MMObject>& objects) const {
        return list(objects.size(), [&](std::size_t i) { return uid(objects[i]); });
    }

    std::string links(const PathWay& way) const {
        return list(way.links.size(), way.gap, way.leftOut, [&](std::size_t i) {
            const PathLink& link = way.links[i];
            return joined({"{\"from\":", uid(link.from), ",\"association\":",
                           jsonString(link.association), ",\"to\":", uid(link.to), "}"});
        });
    }

    std::string valueMember(const PartValue& value) const {
        const std::string form =
            std::visit([this](const auto& content) { return this->contentForm(content); }, value);
        return joined({isFailure(value) ? "\"error\":" : "\"value\":", form});
    }
    static std::string contentForm(const MMValue& value) { return jsonValue(value); }
    static std::string contentForm(const PartFailure& failure) {
        return jsonString(failure.sentence);
    }
    std::string contentForm(const MMObject& object) const { return uid(object); }
    std::string contentForm(const std::vector<MMObject>& objects) const { return uids(objects); }
    static std::string contentForm(const std::vector<std::string>& texts) {
        return list(texts.size(), [&texts](std::size_t i) { return jsonString(texts[i]); });
    }

    const ExpressionText& expression_;
    std::string_view text_;
    const RepositoryModel& model_;
};

}  // namespace

std::string evidenceText(const Evidence& evidence, const ExpressionText& text,
                         const RepositoryModel& model, const std::string& indent) {
    TextForm form(text, model, indent);
    const auto failing = std::find_if(evidence.lines.rbegin(), evidence.lines.rend(),
                                      [](const auto& line) { return isFailure(line.value); });
    for (const EvidenceLine& line : evidence.lines) {
        form.write(line, failing != evidence.lines.rend() && &line == &*failing);
    }
    if (evidence.isCut) {
        form.writeCut();
    }
    return form.release();
}

std::string evidenceJson(const Evidence& evidence, const ExpressionText& text,
                         const RepositoryModel& model) {
    const JsonForm form(text, model);
    std::string json;
    for (const EvidenceLine& line : evidence.lines) {
        json += joined({json.empty() ? "[" : ",", form.formOf(line)});
    }
    if (evidence.isCut) {
        json += joined({json.empty() ? "[" : ",", "{\"isCut\":true}"});
    }
    return json.empty() ? "[]" : json + "]";
}

}  // namespace mmq
