// For other programs, one line a finding: JSON objects, CSV, and the commands by which a GitHub
// workflow is told of annotations.
#include <string>
#include <string_view>

#include "Csv.h"
#include "JsonWriter.h"
#include "lint/Escaping.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

std::string jsonOf(const Finding& finding) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("state", nameOf(finding.state));
    json.add("kind", nameOf(finding.kind));
    json.add("severity", nameOf(finding.severity));
    json.add("rule", finding.rule->id);
    json.add("file", finding.file);
    json.add("line", std::uint64_t{finding.place.line});
    json.add("column", std::uint64_t{finding.place.column});
    if (!finding.className.empty()) {
        json.add("class", finding.className);
        json.add("name", finding.name);
        json.add("path", finding.path);
        json.add("uid", finding.uid);
    }
    json.add("message", finding.message);
    json.add("reason", finding.rule->reason);
    if (!finding.rule->link.empty()) {
        json.add("link", finding.rule->link);
    }
    if (!finding.justification.empty()) {
        json.add("justification", finding.justification);
    }
    if (!finding.why.json.empty()) {
        json.addJson("why", finding.why.json);
    }
    json.endObject();
    return json.text() + "\n";
}

std::string jsonOf(const FixedFinding& fixed) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("state", "fixed");
    json.add("kind", nameOf(fixed.kind));
    json.add("severity", nameOf(fixed.severity()));
    json.add("rule", fixed.rule);
    if (!fixed.element.empty()) {
        json.add("element", fixed.element);
    }
    json.add("message", fixed.message);
    json.add("reason", fixed.source->reason);
    if (!fixed.source->link.empty()) {
        json.add("link", fixed.source->link);
    }
    json.endObject();
    return json.text() + "\n";
}

std::string csvText(const std::string& text) { return csvField(onOneLine(text)); }

// The data of a workflow command ends at the end of its line; a property, at a comma or colon too.
std::string commandText(std::string_view text, bool isProperty) {
    std::string result;
    for (const char byte : text) {
        switch (byte) {
            case '%':
                result.append("%25");
                break;
            case '\r':
                result.append("%0D");
                break;
            case '\n':
                result.append("%0A");
                break;
            case ':':
                result.append(isProperty ? "%3A" : ":");
                break;
            case ',':
                result.append(isProperty ? "%2C" : ",");
                break;
            default:
                result.push_back(byte);
        }
    }
    return result;
}

const char* commandOf(const Finding& finding) {
    return finding.severity == Severity::error     ? "error"
           : finding.severity == Severity::warning ? "warning"
                                                   : "notice";
}

std::string annotationOf(const Finding& finding) {
    std::string text = onOneLine(finding.message);
    if (!finding.className.empty()) {
        text.append("\n").append(
            onOneLine(finding.path + " (" + finding.className + ", uid " + finding.uid + ")"));
    }
    text.append("\n").append(onOneLine(finding.rule->reason));
    text += finding.rule->link.empty() ? "" : "\n" + finding.rule->link;
    text += finding.why.text.empty() ? "" : "\n" + finding.why.text;
    return text;
}

}  // namespace

void writeJsonLines(const Report& report, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        stream << jsonOf(finding);
    }
    for (const FixedFinding& fixed : report.fixed) {
        stream << jsonOf(fixed);
    }
}

void writeCsv(const Report& report, std::ostream& stream) {
    stream << "state,kind,severity,rule,file,line,column,class,name,path,uid,message,reason,link,"
              "justification\n";
    for (const Finding& finding : report.findings) {
        const Rule& rule = *finding.rule;
        stream << nameOf(finding.state) << ',' << nameOf(finding.kind) << ','
               << nameOf(finding.severity) << ',' << rule.id << ',' << csvText(finding.file) << ','
               << finding.place.line << ',' << finding.place.column;
        for (const std::string* text :
             {&finding.className, &finding.name, &finding.path, &finding.uid, &finding.message,
              &rule.reason, &rule.link, &finding.justification}) {
            stream << ',' << csvText(*text);
        }
        stream << '\n';
    }
    // The element of a baseline is a path or a uid.
    for (const FixedFinding& fixed : report.fixed) {
        stream << "fixed," << nameOf(fixed.kind) << ',' << nameOf(fixed.severity()) << ','
               << csvText(fixed.rule) << ",,,,,," << csvText(fixed.element) << ",,"
               << csvText(fixed.message) << ',' << csvText(fixed.source->reason) << ','
               << csvText(fixed.source->link) << ",\n";
    }
}

void writeGithub(const Report& report, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        if (finding.isFresh()) {
            stream << "::" << commandOf(finding)
                   << " file=" << commandText(onOneLine(finding.file), true)
                   << ",line=" << finding.place.line << ",col=" << finding.place.column
                   << ",title=" << commandText(finding.rule->id, true)
                   << "::" << commandText(annotationOf(finding), false) << '\n';
        }
    }
    stream << summaryOf(report) << ".\n";
}

}  // namespace mmq
