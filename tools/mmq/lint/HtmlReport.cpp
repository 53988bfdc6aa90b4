// One page that needs nothing else: panels with a bar for each severity, rule and class, and the
// findings below. It is whole without its program, which only filters. Every text of models and
// rules is escaped, and links are those that the reader of rules lets through, so nothing in them
// becomes markup.
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HtmlAssets.h"
#include "lint/Escaping.h"
#include "lint/ReportFormats.h"

namespace mmq {

namespace {

/// What a finding counts as in each panel.
struct Values {
    std::string severity;
    std::string rule;
    std::string className;
    std::string state;
};

Values valuesOf(const Finding& finding) {
    return {nameOf(finding.severity), finding.rule->id,
            finding.className.empty() ? "about the rule" : finding.className,
            finding.kind == Finding::Kind::failure ? "failed" : nameOf(finding.state)};
}

Values valuesOf(const BaselineEntry& entry) { return {"fixed", entry.rule, "fixed", "fixed"}; }

/// The bars of one panel: how many findings have each value.
class Panel {
public:
    Panel(const char* title, const char* field) : title_(title), field_(field) {}

    void add(const std::string& value, std::size_t count) {
        const auto found = std::find_if(bars_.begin(), bars_.end(),
                                        [&value](const auto& bar) { return bar.first == value; });
        if (found == bars_.end()) {
            bars_.emplace_back(value, count);
        } else {
            found->second += count;
        }
    }

    std::size_t size() const { return bars_.size(); }
    bool has(const std::string& value) const {
        return std::any_of(bars_.begin(), bars_.end(),
                           [&value](const auto& bar) { return bar.first == value; });
    }

    /// Puts the longest bars first.
    void sort() {
        std::stable_sort(bars_.begin(), bars_.end(),
                         [](const auto& a, const auto& b) { return a.second > b.second; });
    }

    void write(const std::string& chosen, std::ostream& stream) const {
        std::size_t most = 1;
        for (const auto& [value, count] : bars_) {
            most = std::max(most, count);
        }
        stream << "<section class=\"panel\"><h2>" << title_ << "</h2>\n";
        for (const auto& [value, count] : bars_) {
            const std::string text = xmlText(value);
            const bool isColored = field_ == std::string_view("severity");
            stream << "<button class=\"choice" << (count == 0 ? " none" : "")
                   << "\" type=\"button\" aria-pressed=\"" << (value == chosen ? "true" : "false")
                   << "\" data-field=\"" << field_ << "\" data-value=\"" << text
                   << "\"><span class=\"label\">" << text << "</span><span class=\"count\">"
                   << count << "</span><span class=\"bar " << (isColored ? text : "")
                   << "\" style=\"--share:" << 100 * count / most
                   << "%\"><span></span></span></button>\n";
        }
        stream << "</section>\n";
    }

private:
    const char* title_;
    const char* field_;
    std::vector<std::pair<std::string, std::size_t>> bars_;
};

/// Writes the page of one report.
class HtmlWriter {
public:
    HtmlWriter(const Report& report, std::ostream& stream) : report_(report), stream_(stream) {}

    void write() {
        stream_ << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                   "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
                   "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                   "style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n"
                   "<title>mmq lint</title>\n<style>\n"
                << reportStyle << "</style>\n</head>\n<body>\n<h1>" << heading() << "</h1>\n"
                << "<p class=\"faint\">" << xmlText(summaryOf(report_)) << "</p>\n";
        writePanels();
        stream_ << "<div class=\"search\"><input type=\"search\" aria-label=\"Search\" "
                   "placeholder=\"Search in messages, paths, uids\"><button type=\"button\" "
                   "id=\"reset\">Show all</button><span id=\"shown\" class=\"faint\" "
                   "role=\"status\"></span></div>\n<main>\n";
        for (const Finding& finding : report_.findings) {
            writeFinding(finding);
        }
        for (const BaselineEntry& entry : report_.fixed) {
            writeFixed(entry);
        }
        stream_ << "</main>\n<script>\n" << reportProgram << "</script>\n</body>\n</html>\n";
    }

private:
    std::string heading() const {
        const std::size_t count = ReportCounts(report_).fresh();
        const std::string what = report_.hasBaseline ? "new finding" : "finding";
        return (count == 0 ? "No" : std::to_string(count)) + " " + what + (count == 1 ? "" : "s");
    }

    void count(const Values& values) {
        severities_.add(values.severity, 1);
        rules_.add(values.rule, 1);
        classes_.add(values.className, 1);
        states_.add(values.state, 1);
    }

    void writePanels() {
        for (const char* severity : {"error", "warning", "note"}) {
            severities_.add(severity, 0);
        }
        for (const Rule* rule : report_.rules) {
            rules_.add(rule->id, 0);
        }
        for (const Finding& finding : report_.findings) {
            count(valuesOf(finding));
        }
        for (const BaselineEntry& entry : report_.fixed) {
            count(valuesOf(entry));
        }
        rules_.sort();
        classes_.sort();
        stream_ << "<div class=\"panels\">\n";
        severities_.write("", stream_);
        rules_.write("", stream_);
        if (classes_.size() > 0) {
            classes_.write("", stream_);
        }
        if (states_.size() > 1) {
            states_.write(states_.has("new") && !states_.has("failed") ? "new" : "", stream_);
        }
        stream_ << "</div>\n";
    }

    void beginFinding(const Values& values, const std::string& message) {
        stream_ << "<article class=\"finding " << values.severity << "\" data-severity=\""
                << values.severity << "\" data-rule=\"" << xmlText(values.rule)
                << "\" data-class=\"" << xmlText(values.className) << "\" data-state=\""
                << values.state << "\">\n<h3>" << xmlText(message)
                << "</h3>\n<p><span class=\"tag\">"
                << (values.state == "new" || values.state == "fixed"
                        ? values.severity
                        : values.severity + ", " + values.state)
                << "</span><span class=\"faint\">" << xmlText(values.rule) << "</span></p>\n";
    }

    void writeFinding(const Finding& finding) {
        beginFinding(valuesOf(finding), finding.message);
        if (!finding.className.empty()) {
            stream_ << "<p class=\"path\">" << xmlText(finding.path) << "</p>\n<p class=\"faint\">"
                    << xmlText(finding.className) << ", uid " << xmlText(finding.uid) << ", ";
        } else {
            stream_ << "<p class=\"faint\">";
        }
        stream_ << xmlText(finding.file) << ':' << finding.place.line << ':' << finding.place.column
                << "</p>\n<p>" << xmlText(finding.rule->reason);
        if (!finding.rule->link.empty()) {
            stream_ << " <a rel=\"noreferrer\" href=\"" << xmlText(finding.rule->link) << "\">"
                    << xmlText(finding.rule->link) << "</a>";
        }
        stream_ << "</p>\n";
        if (!finding.justification.empty()) {
            stream_ << "<p>Suppressed: " << xmlText(finding.justification) << "</p>\n";
        }
        if (!finding.why.text.empty()) {
            stream_ << "<pre>" << xmlText(finding.why.text) << "</pre>\n";
        }
        stream_ << "</article>\n";
    }

    void writeFixed(const BaselineEntry& entry) {
        beginFinding(valuesOf(entry), entry.message);
        stream_ << "<p class=\"path\">" << xmlText(entry.element) << "</p>\n</article>\n";
    }

    const Report& report_;
    std::ostream& stream_;
    Panel severities_{"Severity", "severity"};
    Panel rules_{"Rule", "rule"};
    Panel classes_{"Class", "class"};
    Panel states_{"State", "state"};
};

}  // namespace

void writeHtml(const Report& report, std::ostream& stream) { HtmlWriter(report, stream).write(); }

}  // namespace mmq
