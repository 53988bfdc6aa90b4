// What judging models by rules came to.
#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lint/Rule.h"

namespace mmq {

/// The evidence for a finding, in lines of text and as a JSON array.
struct Why {
    std::string text;
    std::string json;
};

/// Something that is to be told about one rule, most often that an element breaks it.
struct Finding {
    enum class Kind {
        element,            ///< an object of a model breaks the rule, or is what it finds
        nothingToJudge,     ///< no model has an object of the rule's classes
        unusedSuppression,  ///< a suppression of the rule suppresses nothing
        failure             ///< the rule has no value for an object
    };
    enum class State {
        fresh,      ///< counts
        known,      ///< stands in the baseline
        suppressed  ///< by the rules file
    };

    Kind kind = Kind::element;
    State state = State::fresh;
    const Rule* rule = nullptr;
    std::size_t ruleNumber = 0;  ///< among the rules of the report
    Severity severity = Severity::error;
    std::string file;  ///< the model's, or the rules file's where there is no object
    TextPlace place;
    std::string className;  ///< of the object, as what follows; empty where there is none
    std::string name;
    std::string path;
    std::string uid;
    bool hasId = false;  ///< whether the uid is an id of the document
    std::string message;
    std::string justification;  ///< of a suppressed finding
    Why why;                    ///< empty unless it was asked for

    bool isFresh() const { return state == State::fresh; }
    /// What tells the element in a baseline: its id, else its path.
    const std::string& identity() const { return hasId ? uid : path; }
};

/// How severe a finding of a rule is: what evaluations fail of is an error, what can go a warning.
Severity severityOf(Finding::Kind kind, const Rule& rule);

/// A finding of a baseline.
struct BaselineEntry {
    std::string rule;
    std::string element;
    std::string message;
    Finding::Kind kind = Finding::Kind::element;

    auto operator<=>(const BaselineEntry& other) const = default;
};

/// A finding of the baseline that is found no more, and the rule that found it.
struct FixedFinding : BaselineEntry {
    const Rule* source = nullptr;

    Severity severity() const { return severityOf(kind, *source); }
};

/// Everything that one run has to tell. Borrows the rules.
struct Report {
    std::vector<std::string> models;
    std::vector<const Rule*> rules;
    std::vector<Finding> findings;    ///< by rules file, then by model in document order
    std::vector<FixedFinding> fixed;  ///< of the baseline, what is found no more
    bool hasBaseline = false;
    std::optional<Severity> failOn;  ///< the least severity that fails; nothing for none
    std::size_t objectCount = 0;     ///< objects that rules looked at

    bool fails(const Finding& finding) const {
        return finding.isFresh() && failOn && finding.severity >= *failOn;
    }
};

/// How many findings there are of each kind that a summary tells.
struct ReportCounts {
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t notes = 0;
    std::size_t known = 0;
    std::size_t suppressed = 0;
    std::size_t failures = 0;

    explicit ReportCounts(const Report& report);
    /// The findings that count.
    std::size_t fresh() const { return errors + warnings + notes; }
};

/// "3 findings (1 error, 2 warnings), 1 suppressed, 2 fixed".
std::string summaryOf(const Report& report);

/// The texts of the enumerations in reports and baselines, which programs read.
const char* nameOf(Finding::Kind kind);
const char* nameOf(Finding::State state);

}  // namespace mmq
