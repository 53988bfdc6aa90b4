// Regular expressions of the string library: validation, search, groups and replacement texts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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

    /// tooLong is a weight above the bound, or the engine's own refusal of a pattern by the size of
    /// its program; illegal any other refusal.
    StatVal status() const;

    /// A pattern that weighs more is refused before the engine sees it, which would use time and
    /// memory out of proportion. Below it the engine takes some 100 ms and 70 MB at most, and for
    /// patterns that people write some microseconds.
    static constexpr std::size_t heaviest = std::size_t{1} << 15U;

    /// The characters of a pattern, of which a class counts for one and half of its bytes, a class
    /// of Unicode characters (`\p`) for 256, and what a repetition {n,m} repeats for m times as
    /// much; and a 1024th of the square of the pieces that may be absent, of which {n,m} makes
    /// m - n. One that is past the bound is not weighed to the end. Throws std::bad_alloc.
    static std::size_t weigh(std::string_view pattern);

    /// True when the pattern matches anywhere in the subject.
    bool matches(std::string_view subject) const;

    /// Finds the leftmost match that starts at or after `start`; fills `groups` with views into
    /// `subject` and returns true, or returns false. What stands before `start` still counts as
    /// context for "^" and "\b". Of the groups only the first `groupCount` are looked for, the
    /// match as a whole included; the others are left empty.
    bool search(std::string_view subject, std::size_t start, Groups& groups,
                std::size_t groupCount = std::tuple_size_v<Groups>) const;

    /// What matches() and search() may come to with the worst of subjects, in instructions of the
    /// engine, some 10 ns each. Mostly they take a small part of it, but cannot be stopped.
    std::uint64_t worstMatch(std::size_t subjectSize) const {
        return (subjectSize + 1) * matchInstructions_;
    }
    std::uint64_t worstSearch(std::size_t subjectSize) const {
        return (subjectSize + 1) * searchInstructions_;
    }

    /// Appends `replacement` to `result` with "\0" to "\9" replaced by the groups and "\\" by one
    /// backslash; any other backslash stands for itself.
    static void appendReplacement(std::string& result, std::string_view replacement,
                                  const Groups& groups);

    /// The beginning of a replacement, of some 64 KiB where it is longer; going over a replacement
    /// piece by piece comes to the same as going over it at once.
    static std::string_view firstPiece(std::string_view replacement);

    /// What a replacement consists of: bytes that stand for themselves, and groups, each so often.
    struct ReplacementParts {
        ReplacementParts() = default;
        explicit ReplacementParts(std::string_view replacement);
        /// Counts a further piece.
        void add(std::string_view replacement);
        /// How many bytes the replacement has, filled in.
        std::size_t size(const Groups& groups) const;
        /// How many groups a search has to find for it, the match as a whole included.
        std::size_t groupCount() const;

        std::size_t plainBytes = 0;
        std::array<std::size_t, std::tuple_size_v<Groups>> uses{};
    };

    /// Whether this thread is inside the engine, which does not survive that an allocation fails
    /// there. A pattern is only begun where there is memory to spare; an operator new of a host's
    /// own that refuses memory by a quota lets these allocations pass.
    static bool isInEngine() noexcept;

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
    std::uint64_t matchInstructions_ = 0;
    std::uint64_t searchInstructions_ = 0;
};
