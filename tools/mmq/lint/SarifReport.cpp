// SARIF 2.1.0, for services that show the findings of analysis tools. Failed evaluations are
// notifications of the run, which was then no success; what is fixed is a result that is absent.
#include <string>
#include <string_view>

#include "JsonWriter.h"
#include "Version.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

constexpr const char* schemaAddress =
    "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json";

// A path as a reference: every byte that may not stand in one as %XX; absolute paths as file URIs.
std::string uriOf(const std::string& path) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = path.front() == '/' ? "file://" : "";
    for (const char byte : path) {
        if (plain.find(byte) != std::string_view::npos) {
            uri += byte;
        } else {
            const auto code = static_cast<unsigned char>(byte);
            uri += '%';
            uri += digits[code >> 4U];
            uri += digits[code & 0xFU];
        }
    }
    return uri;
}

/// Composes one log with one run.
class SarifLog {
public:
    explicit SarifLog(const Report& report) : report_(report) {}

    std::string compose() {
        json_.beginObject();
        json_.add("$schema", schemaAddress);
        json_.add("version", "2.1.0");
        json_.beginList("runs");
        json_.beginObject();
        addTool();
        addInvocation();
        addResults();
        json_.endObject();
        json_.endList();
        json_.endObject();
        return json_.text() + "\n";
    }

private:
    // A message, a description: an object with a text.
    void addText(const char* name, const std::string& text) {
        json_.beginObject(name);
        json_.add("text", text);
        json_.endObject();
    }

    void addTool() {
        json_.beginObject("tool");
        json_.beginObject("driver");
        json_.add("name", "mmq");
        json_.add("version", version);
        json_.beginList("rules");
        for (const Rule* rule : report_.rules) {
            addRule(*rule);
        }
        json_.endList();
        json_.endObject();
        json_.endObject();
    }

    void addRule(const Rule& rule) {
        json_.beginObject();
        json_.add("id", rule.id);
        addText("fullDescription", rule.reason);
        if (!rule.link.empty()) {
            json_.add("helpUri", rule.link);
        }
        json_.beginObject("defaultConfiguration");
        json_.add("level", nameOf(rule.severity));
        json_.endObject();
        json_.endObject();
    }

    void addInvocation() {
        json_.beginList("invocations");
        json_.beginObject();
        json_.add("executionSuccessful", ReportCounts(report_).failures == 0);
        json_.beginList("toolExecutionNotifications");
        for (const Finding& finding : report_.findings) {
            if (finding.kind == Finding::Kind::failure) {
                addFailure(finding);
            }
        }
        json_.endList();
        json_.endObject();
        json_.endList();
    }

    void addFailure(const Finding& finding) {
        json_.beginObject();
        json_.add("level", "error");
        addText("message", finding.message);
        json_.beginObject("associatedRule");
        json_.add("id", finding.rule->id);
        json_.add("index", std::uint64_t{finding.ruleNumber});
        json_.endObject();
        addLocation(finding);
        json_.endObject();
    }

    void addResults() {
        json_.beginList("results");
        for (const Finding& finding : report_.findings) {
            if (finding.kind != Finding::Kind::failure) {
                addResult(finding);
            }
        }
        for (const BaselineEntry& entry : report_.fixed) {
            json_.beginObject();
            json_.add("ruleId", entry.rule);
            json_.add("baselineState", "absent");
            addText("message", entry.message);
            addFingerprint(entry);
            json_.endObject();
        }
        json_.endList();
    }

    void addResult(const Finding& finding) {
        json_.beginObject();
        json_.add("ruleId", finding.rule->id);
        json_.add("ruleIndex", std::uint64_t{finding.ruleNumber});
        json_.add("level", nameOf(finding.severity));
        addText("message", finding.message);
        addLocation(finding);
        if (report_.hasBaseline) {
            const bool isKnown = finding.state == Finding::State::known;
            json_.add("baselineState", isKnown ? "unchanged" : "new");
        }
        if (finding.state == Finding::State::suppressed) {
            json_.beginList("suppressions");
            json_.beginObject();
            json_.add("kind", "external");
            json_.add("justification", finding.justification);
            json_.endObject();
            json_.endList();
        }
        addFingerprint({finding.rule->id, finding.identity(), finding.message});
        if (!finding.why.text.empty()) {
            json_.beginObject("properties");
            json_.add("why", finding.why.text);
            json_.endObject();
        }
        json_.endObject();
    }

    void addFingerprint(const BaselineEntry& entry) {
        json_.beginObject("partialFingerprints");
        json_.add("ruleElementMessage/v1", entry.rule + "|" + entry.element + "|" + entry.message);
        json_.endObject();
    }

    void addLocation(const Finding& finding) {
        json_.beginList("locations");
        json_.beginObject();
        json_.beginObject("physicalLocation");
        json_.beginObject("artifactLocation");
        json_.add("uri", uriOf(finding.file));
        json_.endObject();
        json_.beginObject("region");
        json_.add("startLine", std::uint64_t{finding.place.line});
        json_.endObject();
        json_.endObject();
        if (!finding.className.empty()) {
            addElement(finding);
        }
        json_.endObject();
        json_.endList();
    }

    void addElement(const Finding& finding) {
        json_.beginList("logicalLocations");
        json_.beginObject();
        if (!finding.name.empty()) {
            json_.add("name", finding.name);
        }
        json_.add("fullyQualifiedName", finding.path);
        json_.add("kind", finding.className);
        json_.beginObject("properties");
        json_.add("uid", finding.uid);
        json_.endObject();
        json_.endObject();
        json_.endList();
    }

    const Report& report_;
    JsonWriter json_{JsonWriter::Layout::indented};
};

}  // namespace

void writeSarif(const Report& report, std::ostream& stream) {
    stream << SarifLog(report).compose();
}

}  // namespace mmq
