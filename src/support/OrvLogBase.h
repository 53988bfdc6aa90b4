// A log of lines in categories, each of which is written only when it is enabled.
#pragma once

#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

/// A log that a host reads to see what the system throws and catches.
///
/// The system writes to two categories of the exception log (OrvException::getLog()): "Throw",
/// a line before each throw, and "Catch", a line where the driver's boundary ends a compilation.
/// Categories and stream are set before threads start; lines may be written from any thread and
/// never mix. Owns nothing: the stream is the host's and must outlive the log's use.
class __attribute__((visibility("default"))) OrvLogBase {
public:
    /// A log with every category off that writes to the standard error stream.
    OrvLogBase();
    OrvLogBase(const OrvLogBase&) = delete;
    OrvLogBase& operator=(const OrvLogBase&) = delete;

    void enable(const std::string& category);
    void disable(const std::string& category);
    bool isEnabled(std::string_view category) const;

    /// Sends all further lines to `stream`.
    void setStream(std::ostream& stream);

    /// Writes the pieces and an end of line if the category is enabled, else nothing. A stream
    /// that fails or throws loses the line; the caller never notices.
    void writeLine(std::string_view category,
                   std::initializer_list<std::string_view> pieces) noexcept;

private:
    std::set<std::string, std::less<>> categories_;
    std::ostream* stream_;
    std::mutex mutex_;
};
