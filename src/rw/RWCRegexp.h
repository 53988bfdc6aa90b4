// Regular expressions of the string library: validation, search, groups and replacement texts.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// One compiled pattern, matched in time linear in the subject.
///
/// The syntax is RE2's (https://github.com/google/re2/wiki/Syntax): Perl's without back references
/// and look-around; texts are UTF-8, and a byte that is not is matched by nothing but `\C`. The
/// engine stays hidden in the source file. Copying is not offered; a pattern belongs to one
/// thread at a time.
class __attribute__((visibility("default"))) RWCRegexp {
public:
    /// How the pattern was taken; every value but ok leaves a pattern that matches nothing.
    enum StatVal { ok = 0, illegal = 1, tooLong = 3 };

    /// A match as a whole (0) and its groups (1 to 9); a group that took no part is empty.
    using Groups = std::array<std::string_view, 10>;

    explicit RWCRegexp(std::string_view pattern);
    RWCRegexp(RWCRegexp&&) noexcept;
    ~RWCRegexp();

    /// tooLong is the engine's own refusal of a pattern by its size, illegal any other refusal.
    StatVal status() const;

    /// True when the pattern matches anywhere in the subject.
    bool matches(std::string_view subject) const;

    /// Finds the leftmost match that starts at or after `start`; fills `groups` with views into
    /// `subject` and returns true, or returns false. What stands before `start` still counts as
    /// context for "^" and "\b".
    bool search(std::string_view subject, std::size_t start, Groups& groups) const;

    /// Appends `replacement` to `result` with "\0" to "\9" replaced by the groups and "\\" by one
    /// backslash; any other backslash stands for itself.
    static void appendReplacement(std::string& result, std::string_view replacement,
                                  const Groups& groups);

    /// Whether this thread is inside the engine, which does not survive that an allocation fails
    /// there. A pattern is only begun where there is memory to spare; an operator new of a host's
    /// own that refuses memory by a quota lets these allocations pass.
    static bool isInEngine() noexcept;

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};
