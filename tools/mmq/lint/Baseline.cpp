#include "lint/Baseline.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "SourceFile.h"
#include "TextFile.h"
#include "foundation/TextOutput.h"

namespace mmq {

namespace {

BaselineEntry entryOf(const Finding& finding) {
    return {finding.rule->id, finding.identity(), finding.message};
}

// Whether a baseline is about findings of this kind.
bool isKept(const Finding& finding) {
    return finding.isFresh() && (finding.kind == Finding::Kind::element ||
                                 finding.kind == Finding::Kind::nothingToJudge);
}

std::string textOf(const rapidjson::Value& object, const char* name) {
    const auto member = object.FindMember(name);
    if (member == object.MemberEnd() || !member->value.IsString()) {
        throw std::invalid_argument(std::string("A finding has no text \"") + name + "\".");
    }
    return {member->value.GetString(), member->value.GetStringLength()};
}

/// How many there are of each.
using Entries = std::map<BaselineEntry, std::size_t>;

Entries entriesOf(const rapidjson::Document& document) {
    const auto list = document.IsObject() ? document.FindMember("findings")
                                          : rapidjson::Value::ConstMemberIterator();
    if (!document.IsObject() || list == document.MemberEnd() || !list->value.IsArray()) {
        throw std::invalid_argument("It has no list \"findings\".");
    }
    Entries entries;
    for (const rapidjson::Value& value : list->value.GetArray()) {
        if (!value.IsObject()) {
            throw std::invalid_argument("A finding is no object.");
        }
        ++entries[{textOf(value, "rule"), textOf(value, "element"), textOf(value, "message")}];
    }
    return entries;
}

Entries readEntries(const std::string& path) {
    const SourceFile source(path, readTextFile(path, "The baseline"));
    rapidjson::Document document;
    constexpr unsigned flags =
        rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    document.Parse<flags>(source.text().data(), source.text().size());
    if (document.HasParseError()) {
        const TextPlace place =
            source.place(std::min(document.GetErrorOffset(), source.text().size()));
        throw std::runtime_error(
            path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) +
            ": The baseline is no JSON: " + rapidjson::GetParseError_En(document.GetParseError()));
    }
    try {
        return entriesOf(document);
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(path + ": This is no baseline: " + error.what());
    }
}

std::string lineOf(const BaselineEntry& entry) {
    std::string line = "    {\"rule\":";
    appendJsonString(line, entry.rule);
    line += ",\"element\":";
    appendJsonString(line, entry.element);
    line += ",\"message\":";
    appendJsonString(line, entry.message);
    return line + "}";
}

}  // namespace

void applyBaseline(const std::string& path, Report& report) {
    Entries entries = readEntries(path);
    report.hasBaseline = true;
    for (Finding& finding : report.findings) {
        const auto entry = isKept(finding) ? entries.find(entryOf(finding)) : entries.end();
        if (entry != entries.end() && entry->second > 0) {
            --entry->second;
            finding.state = Finding::State::known;
        }
    }
    for (const auto& [entry, count] : entries) {
        const bool isJudged =
            std::any_of(report.rules.begin(), report.rules.end(),
                        [&id = entry.rule](const Rule* rule) { return rule->id == id; });
        report.fixed.insert(report.fixed.end(), isJudged ? count : 0, entry);
    }
}

void writeBaseline(const std::string& path, Report& report) {
    std::vector<BaselineEntry> entries;
    for (Finding& finding : report.findings) {
        if (isKept(finding)) {
            entries.push_back(entryOf(finding));
            finding.state = Finding::State::known;
        }
    }
    std::sort(entries.begin(), entries.end());
    std::string text = "{\n  \"findings\": [";
    const char* separator = "\n";
    for (const BaselineEntry& entry : entries) {
        text += std::exchange(separator, ",\n") + lineOf(entry);
    }
    std::ofstream stream(path, std::ios::binary);
    stream << text << (entries.empty() ? "" : "\n  ") << "]\n}\n" << std::flush;
    if (!stream) {
        throw std::runtime_error(path + ": The baseline cannot be written.");
    }
    report.hasBaseline = true;
}

}  // namespace mmq
