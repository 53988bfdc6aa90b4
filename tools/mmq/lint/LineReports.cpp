// For other programs, one line a finding: JSON objects, CSV, and the commands by which a GitHub
// workflow is told of annotations.
#include <string>
#include <string_view>

#include "Csv.h"
#include "foundation/TextOutput.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

/// Composes one JSON object.
class JsonLine {
public:
    void add(const char* name, std::string_view text) {
        begin(name);
        appendJsonString(json_, text);
    }
    void addUnlessEmpty(const char* name, std::string_view text) {
        if (!text.empty()) {
            add(name, text);
        }
    }
    void add(const char* name, std::uint32_t number) {
        begin(name);
        appendInteger(json_, number);
    }
    std::string finish() { return json_ + "}\n"; }

private:
    void begin(const char* name) {
        json_.append(json_.empty() ? "{" : ",");
        appendJsonString(json_, name);
        json_.append(":");
    }

    std::string json_;
};

std::string jsonOf(const Finding& finding) {
    JsonLine line;
    line.add("state", nameOf(finding.state));
    line.add("kind", nameOf(finding.kind));
    line.add("severity", nameOf(finding.severity));
    line.add("rule", finding.rule->id);
    line.add("file", finding.file);
    line.add("line", finding.place.line);
    line.add("column", finding.place.column);
    if (!finding.className.empty()) {
        line.add("class", finding.className);
        line.add("name", finding.name);
        line.add("path", finding.path);
        line.add("uid", finding.uid);
    }
    line.add("message", finding.message);
    line.add("reason", finding.rule->reason);
    line.addUnlessEmpty("link", finding.rule->link);
    line.addUnlessEmpty("justification", finding.justification);
    return line.finish();
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
    return text;
}

}  // namespace

void writeJsonLines(const Report& report, std::ostream& stream) {
    for (const Finding& finding : report.findings) {
        stream << jsonOf(finding);
    }
    for (const BaselineEntry& entry : report.fixed) {
        JsonLine line;
        line.add("state", "fixed");
        line.add("rule", entry.rule);
        line.add("element", entry.element);
        line.add("message", entry.message);
        stream << line.finish();
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
