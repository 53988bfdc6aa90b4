// For other programs, one line a finding: JSON objects, CSV, and the commands by which a GitHub
// workflow is told of annotations.
#include <string>
#include <string_view>

#include "Csv.h"
#include "JsonWriter.h"
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

std::string jsonOf(const BaselineEntry& entry) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("state", "fixed");
    json.add("rule", entry.rule);
    json.add("element", entry.element);
    json.add("message", entry.message);
    json.endObject();
    return json.text() + "\n";
}

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
    std::string text = finding.message;
    if (!finding.className.empty()) {
        text += "\n" + finding.path + " (" + finding.className + ", uid " + finding.uid + ")";
    }
    text += "\n" + finding.rule->reason;
    text += finding.rule->link.empty() ? "" : "\n" + finding.rule->link;
    text += finding.why.text.empty() ? "" : "\n" + finding.why.text;
    return text;
}

}  // namespace

void writeJsonLines(const Report& report, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        stream << jsonOf(finding);
    }
    for (const BaselineEntry& entry : report.fixed) {
        stream << jsonOf(entry);
    }
}

void writeCsv(const Report& report, std::ostream& stream) {
    stream << "state,severity,rule,file,line,column,class,path,uid,message,reason,link\n";
    for (const Finding& finding : report.findings) {
        stream << nameOf(finding.state) << ',' << nameOf(finding.severity) << ','
               << finding.rule->id << ',' << csvField(finding.file) << ',' << finding.place.line
               << ',' << finding.place.column << ',' << csvField(finding.className) << ','
               << csvField(finding.path) << ',' << csvField(finding.uid) << ','
               << csvField(finding.message) << ',' << csvField(finding.rule->reason) << ','
               << csvField(finding.rule->link) << '\n';
    }
    for (const BaselineEntry& entry : report.fixed) {
        stream << "fixed,," << csvField(entry.rule) << ",,,,," << csvField(entry.element) << ",,"
               << csvField(entry.message) << ",,\n";
    }
}

void writeGithub(const Report& report, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        if (finding.isFresh()) {
            stream << "::" << commandOf(finding) << " file=" << commandText(finding.file, true)
                   << ",line=" << finding.place.line << ",col=" << finding.place.column
                   << ",title=" << commandText(finding.rule->id, true)
                   << "::" << commandText(annotationOf(finding), false) << '\n';
        }
    }
    stream << summaryOf(report) << ".\n";
}

}  // namespace mmq
