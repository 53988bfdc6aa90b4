// How serious a finding is.
#pragma once

#include <optional>
#include <string_view>

namespace mmq {

/// From the least to the most serious.
enum class Severity { note, warning, error };

inline const char* nameOf(Severity severity) {
    return severity == Severity::error     ? "error"
           : severity == Severity::warning ? "warning"
                                           : "note";
}

/// The severity of a name; nothing for any other text.
inline std::optional<Severity> severityOf(std::string_view name) {
    for (const Severity severity : {Severity::note, Severity::warning, Severity::error}) {
        if (name == nameOf(severity)) {
            return severity;
        }
    }
    return {};
}

}  // namespace mmq
