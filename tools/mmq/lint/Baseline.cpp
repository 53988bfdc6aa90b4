#include "lint/Baseline.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "JsonWriter.h"
#include "SourceFile.h"
#include "TextFile.h"

namespace mmq {

namespace {

BaselineEntry entryOf(const Finding& finding) {
    return {finding.rule->id, finding.identity(), finding.message, finding.kind};
}

// Whether a baseline is about findings of this kind.
bool isKept(const Finding& finding) {
    return finding.isFresh() && finding.kind != Finding::Kind::failure;
}

const char* unusedSuppression() { return nameOf(Finding::Kind::unusedSuppression); }

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
        if (entry_.element.empty() && entry_.kind == Finding::Kind::element) {
            entry_.kind = Finding::Kind::nothingToJudge;
        }
        ++entries_[entry_];
        return !entry_.rule.empty() && !entry_.message.empty();
    }
    bool Key(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        key_.assign(text, length);
        return true;
    }
    bool String(const char* text, rapidjson::SizeType length, bool /*copy*/) {
        if (depth_ == 3 && key_ == "kind") {
            entry_.kind = Finding::Kind::unusedSuppression;
            return std::string_view(text, length) == unusedSuppression();
        }
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

Entries parseEntries(const SourceFile& source) {
    std::string text = source.text();  // parsed in place
    rapidjson::InsituStringStream stream(text.data());
    BaselineHandler handler;
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseValidateEncodingFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, handler);
    if (result.IsError()) {
        const bool isForeign = result.Code() == rapidjson::kParseErrorTermination;
        const TextPlace place = source.place(std::min(result.Offset(), source.text().size()));
        throw std::runtime_error(source.name() + ":" + std::to_string(place.line) + ":" +
                                 std::to_string(place.column) + ": This is no baseline: " +
                                 (isForeign ? "it is JSON of another form."
                                            : rapidjson::GetParseError_En(result.Code())));
    }
    return handler.takeEntries();
}

const Rule* findRule(const Report& report, const std::string& id) {
    const auto found = std::find_if(report.rules.begin(), report.rules.end(),
                                    [&id](const Rule* rule) { return rule->id == id; });
    return found != report.rules.end() ? *found : nullptr;
}

// What a baseline that may be there has of rules that the report is not about. A file that is
// empty is one to be written.
std::vector<BaselineEntry> entriesOfOthers(const std::string& path, const Report& report) {
    std::vector<BaselineEntry> others;
    std::error_code error;
    const bool isThere = std::filesystem::exists(path, error);
    const SourceFile source(path, isThere ? readTextFile(path, "The baseline") : std::string());
    if (!source.text().empty()) {
        for (const auto& [entry, count] : parseEntries(source)) {
            if (findRule(report, entry.rule) == nullptr) {
                others.insert(others.end(), count, entry);
            }
        }
    }
    return others;
}

std::string lineOf(const BaselineEntry& entry) {
    JsonWriter json(JsonWriter::Layout::oneLine);
    json.beginObject();
    json.add("rule", entry.rule);
    json.add("element", entry.element);
    json.add("message", entry.message);
    if (entry.kind == Finding::Kind::unusedSuppression) {
        json.add("kind", unusedSuppression());
    }
    json.endObject();
    return "    " + json.text();
}

}  // namespace

void applyBaseline(const std::string& path, Report& report) {
    Entries entries = parseEntries(SourceFile(path, readTextFile(path, "The baseline")));
    report.hasBaseline = true;
    for (Finding& finding : report.findings) {
        const auto entry = isKept(finding) ? entries.find(entryOf(finding)) : entries.end();
        if (entry != entries.end() && entry->second > 0) {
            --entry->second;
            finding.state = Finding::State::known;
        }
    }
    for (const auto& [entry, count] : entries) {
        if (const Rule* const rule = findRule(report, entry.rule)) {
            report.fixed.insert(report.fixed.end(), count, {entry, rule});
        }
    }
}

void writeBaseline(const std::string& path, Report& report) {
    std::vector<BaselineEntry> entries = entriesOfOthers(path, report);
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
