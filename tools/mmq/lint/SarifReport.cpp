// SARIF 2.1.0, for services that show the findings of analysis tools. Failed evaluations are
// notifications of the run, which was then no success; what is fixed is a result that is absent.
#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>

#include <filesystem>
#include <string>
#include <string_view>

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

/// Writes one log with one run.
class SarifWriter {
public:
    SarifWriter(const Report& report, std::ostream& stream)
        : report_(report), stream_(stream), json_(stream_) {
        json_.SetIndent(' ', 2);
    }

    void write() {
        json_.StartObject();
        add("$schema", schemaAddress);
        add("version", "2.1.0");
        json_.Key("runs");
        json_.StartArray();
        writeRun();
        json_.EndArray();
        json_.EndObject();
    }

private:
    void add(const char* name, std::string_view text) {
        json_.Key(name);
        json_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    }
    // A message, a description: an object with a text.
    void addText(const char* name, std::string_view text) {
        json_.Key(name);
        json_.StartObject();
        add("text", text);
        json_.EndObject();
    }

    void writeRun() {
        json_.StartObject();
        json_.Key("tool");
        json_.StartObject();
        json_.Key("driver");
        json_.StartObject();
        add("name", "mmq");
        add("version", version);
        writeRules();
        json_.EndObject();
        json_.EndObject();
        writeInvocation();
        writeResults();
        json_.EndObject();
    }

    void writeRules() {
        json_.Key("rules");
        json_.StartArray();
        for (const Rule* rule : report_.rules) {
            json_.StartObject();
            add("id", rule->id);
            addText("fullDescription", rule->reason);
            if (!rule->link.empty()) {
                add("helpUri", rule->link);
            }
            json_.Key("defaultConfiguration");
            json_.StartObject();
            add("level", nameOf(rule->severity));
            json_.EndObject();
            json_.EndObject();
        }
        json_.EndArray();
    }

    void writeInvocation() {
        json_.Key("invocations");
        json_.StartArray();
        json_.StartObject();
        json_.Key("executionSuccessful");
        json_.Bool(ReportCounts(report_).failures == 0);
        json_.Key("toolExecutionNotifications");
        json_.StartArray();
        for (const Finding& finding : report_.findings) {
            if (finding.kind == Finding::Kind::failure) {
                writeFailure(finding);
            }
        }
        json_.EndArray();
        json_.EndObject();
        json_.EndArray();
    }

    void writeFailure(const Finding& finding) {
        json_.StartObject();
        add("level", "error");
        addText("message", finding.message);
        json_.Key("associatedRule");
        json_.StartObject();
        writeRuleReference(finding);
        json_.EndObject();
        writeLocations(finding);
        json_.EndObject();
    }

    void writeRuleReference(const Finding& finding, const char* prefix = "") {
        const bool isResult = *prefix != '\0';
        add(isResult ? "ruleId" : "id", finding.rule->id);
        json_.Key(isResult ? "ruleIndex" : "index");
        json_.Uint64(finding.ruleNumber);
    }

    void writeResults() {
        json_.Key("results");
        json_.StartArray();
        for (const Finding& finding : report_.findings) {
            if (finding.kind != Finding::Kind::failure) {
                writeResult(finding);
            }
        }
        for (const BaselineEntry& entry : report_.fixed) {
            json_.StartObject();
            add("ruleId", entry.rule);
            add("baselineState", "absent");
            addText("message", entry.message);
            writeFingerprint(entry.rule, entry.element, entry.message);
            json_.EndObject();
        }
        json_.EndArray();
    }

    void writeResult(const Finding& finding) {
        json_.StartObject();
        writeRuleReference(finding, "rule");
        add("level", nameOf(finding.severity));
        addText("message", finding.message);
        writeLocations(finding);
        if (report_.hasBaseline) {
            add("baselineState", finding.state == Finding::State::known ? "unchanged" : "new");
        }
        if (finding.state == Finding::State::suppressed) {
            json_.Key("suppressions");
            json_.StartArray();
            json_.StartObject();
            add("kind", "external");
            add("justification", finding.justification);
            json_.EndObject();
            json_.EndArray();
        }
        writeFingerprint(finding.rule->id, finding.identity(), finding.message);
        json_.EndObject();
    }

    void writeFingerprint(const std::string& rule, const std::string& element,
                          const std::string& message) {
        json_.Key("partialFingerprints");
        json_.StartObject();
        add("ruleElementMessage/v1", rule + "|" + element + "|" + message);
        json_.EndObject();
    }

    void writeLocations(const Finding& finding) {
        json_.Key("locations");
        json_.StartArray();
        json_.StartObject();
        json_.Key("physicalLocation");
        json_.StartObject();
        json_.Key("artifactLocation");
        json_.StartObject();
        add("uri", uriOf(finding.file));
        json_.EndObject();
        json_.Key("region");
        json_.StartObject();
        json_.Key("startLine");
        json_.Uint(finding.place.line);
        json_.EndObject();
        json_.EndObject();
        if (!finding.className.empty()) {
            writeElement(finding);
        }
        json_.EndObject();
        json_.EndArray();
    }

    void writeElement(const Finding& finding) {
        json_.Key("logicalLocations");
        json_.StartArray();
        json_.StartObject();
        if (!finding.name.empty()) {
            add("name", finding.name);
        }
        add("fullyQualifiedName", finding.path);
        add("kind", finding.className);
        json_.Key("properties");
        json_.StartObject();
        add("uid", finding.uid);
        json_.EndObject();
        json_.EndObject();
        json_.EndArray();
    }

    const Report& report_;
    rapidjson::OStreamWrapper stream_;
    rapidjson::PrettyWriter<rapidjson::OStreamWrapper> json_;
};

}  // namespace

void writeSarif(const Report& report, std::ostream& stream) {
    SarifWriter(report, stream).write();
    stream << '\n';
}

}  // namespace mmq
