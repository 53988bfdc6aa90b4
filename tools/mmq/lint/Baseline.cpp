#include "lint/Baseline.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "JsonWriter.h"
#include "SourceFile.h"
#include "TextFile.h"

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

/// How many there are of each.
using Entries = std::map<BaselineEntry, std::size_t>;

/// Takes the parts of a baseline as they are read; refuses anything that is not one.
class BaselineHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, BaselineHandler> {
public:
    // Numbers, true, false and null.
    static bool Default() { return false; }

    bool StartObject() {
        const bool isExpected = depth_ == 0 || depth_ == 2;
        ++depth_;
        entry_ = {};
        return isExpected;
    }
    bool StartArray() { return depth_++ == 1 && key_ == "findings"; }
    bool EndArray(rapidjson::SizeType /*count*/) {
        hasList_ = true;
        --depth_;
        return true;
    }
    bool EndObject(rapidjson::SizeType /*count*/) {
        if (--depth_ == 0) {
            return hasList_;
        }
        ++entries_[entry_];
        return !entry_.rule.empty() && !entry_.message.empty();
    }
    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        key_.assign(text, length);
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        std::string* const part = key_ == "rule"      ? &entry_.rule
                                  : key_ == "element" ? &entry_.element
                                  : key_ == "message" ? &entry_.message
                                                      : nullptr;
        if (depth_ != 3 || part == nullptr) {
            return false;
        }
        part->assign(text, length);
        return true;
    }

    Entries takeEntries() { return std::move(entries_); }

private:
    int depth_ = 0;
    bool hasList_ = false;
    std::string key_;
    BaselineEntry entry_;
    Entries entries_;
};

Entries readEntries(const std::string& path) {
    const SourceFile source(path, readTextFile(path, "The baseline"));
    std::string text = source.text();  // parsed in place
    rapidjson::InsituStringStream stream(text.data());
    BaselineHandler handler;
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseValidateEncodingFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, handler);
    if (result.IsError()) {
        const bool isForeign = result.Code() == rapidjson::kParseErrorTermination;
        const TextPlace place = source.place(std::min(result.Offset(), source.text().size()));
        throw std::runtime_error(path + ":" + std::to_string(place.line) + ":" +
                                 std::to_string(place.column) + ": This is no baseline: " +
                                 (isForeign ? "it is JSON of another form."
                                            : rapidjson::GetParseError_En(result.Code())));
    }
    return handler.takeEntries();
}

std::string lineOf(const BaselineEntry& entry) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("rule", entry.rule);
    json.add("element", entry.element);
    json.add("message", entry.message);
    json.endObject();
    return "    " + json.text();
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
