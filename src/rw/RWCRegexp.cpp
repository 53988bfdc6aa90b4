#include "rw/RWCRegexp.h"

#include <re2/re2.h>

#include <algorithm>
#include <optional>

#include "rw/PatternWeight.h"
#include "rw/PlainPattern.h"

namespace {

thread_local bool isEngineEntered = false;

/// Stands around each call of the engine that may allocate.
class EngineEntry {
public:
    EngineEntry() noexcept { isEngineEntered = true; }
    EngineEntry(const EngineEntry&) = delete;
    EngineEntry& operator=(const EngineEntry&) = delete;
    ~EngineEntry() { isEngineEntered = false; }
};

// Fails where there is not enough memory to go into the engine with.
void requireMemory(std::size_t patternSize) {
    constexpr std::size_t least = std::size_t{64} * 1024;
    constexpr std::size_t perByte = 64;
    ::operator delete(::operator new(least + perByte * patternSize));
}

/// Calls onText with each piece of a replacement that stands for itself, onGroup with the number of
/// each group.
template <class OnText, class OnGroup>
void forEachPart(std::string_view replacement, const OnText& onText, const OnGroup& onGroup) {
    std::size_t start = 0;  // of the piece
    std::size_t backslash = replacement.find('\\');
    while (backslash < replacement.size()) {
        const std::size_t next = backslash + 1;
        const char escaped = next < replacement.size() ? replacement[next] : '\0';
        const bool isGroup = escaped >= '0' && escaped <= '9';
        if (isGroup || escaped == '\\') {
            onText(replacement.substr(start, (isGroup ? backslash : next) - start));
            start = next + 1;
        }
        if (isGroup) {
            onGroup(static_cast<std::size_t>(escaped - '0'));
        }
        backslash = replacement.find('\\', std::max(start, next));
    }
    onText(replacement.substr(start));
}

}  // namespace

class RWCRegexp::Engine {
public:
    explicit Engine(std::string_view pattern)
        : expression_(re2::StringPiece(pattern.data(), pattern.size()), quietOptions()) {
        if (expression_.ok()) {
            plain_ = PlainPattern::of(pattern);
        }
    }
    const RE2& expression() const { return expression_; }
    bool isPlain() const { return plain_.has_value(); }

    bool matches(std::string_view subject) const {
        return plain_ ? plain_->matches(subject) : match(subject, 0, nullptr, 0);
    }

    bool match(std::string_view subject, std::size_t start, re2::StringPiece* groups,
               int groupCount) const {
        const EngineEntry entry;
        return expression_.ok() &&
               expression_.Match(re2::StringPiece(subject.data(), subject.size()), start,
                                 subject.size(), RE2::UNANCHORED, groups, groupCount);
    }

private:
    static RE2::Options quietOptions() {
        RE2::Options options;
        options.set_log_errors(false);
        return options;
    }

    RE2 expression_;
    std::optional<PlainPattern> plain_;
};

RWCRegexp::RWCRegexp(std::string_view pattern) {
    if (weigh(pattern) > heaviest) {
        return;
    }
    requireMemory(pattern.size());
    const EngineEntry entry;
    engine_ = std::make_unique<Engine>(pattern);
    if (status() == ok) {
        searchInstructions_ = static_cast<std::uint64_t>(engine_->expression().ProgramSize());
        matchInstructions_ = engine_->isPlain() ? 1 : searchInstructions_;
    }
}
RWCRegexp::RWCRegexp(RWCRegexp&&) noexcept = default;
RWCRegexp::~RWCRegexp() {
    const EngineEntry entry;
    engine_.reset();
}

std::size_t RWCRegexp::weigh(std::string_view pattern) {
    return PatternWeight::of(pattern, heaviest);
}

RWCRegexp::StatVal RWCRegexp::status() const {
    if (engine_ == nullptr) {
        return tooLong;
    }
    switch (engine_->expression().error_code()) {
        case RE2::NoError:
            return ok;
        case RE2::ErrorPatternTooLarge:
            return tooLong;
        default:
            return illegal;
    }
}

bool RWCRegexp::matches(std::string_view subject) const {
    return engine_ != nullptr && engine_->matches(subject);
}

bool RWCRegexp::search(std::string_view subject, std::size_t start, Groups& groups,
                       std::size_t groupCount) const {
    if (engine_ == nullptr || start > subject.size()) {
        return false;
    }
    std::array<re2::StringPiece, std::tuple_size_v<Groups>> pieces;
    const int wanted = std::min(engine_->expression().NumberOfCapturingGroups() + 1,
                                static_cast<int>(std::min(groupCount, pieces.size())));
    if (!engine_->match(subject, start, pieces.data(), wanted)) {
        return false;
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        groups[i] = std::string_view(pieces[i].data(), pieces[i].size());
    }
    return true;
}

bool RWCRegexp::isInEngine() noexcept { return isEngineEntered; }

void RWCRegexp::appendReplacement(std::string& result, std::string_view replacement,
                                  const Groups& groups) {
    forEachPart(
        replacement, [&result](std::string_view text) { result.append(text); },
        [&](std::size_t group) { result.append(groups[group]); });
}

std::string_view RWCRegexp::firstPiece(std::string_view replacement) {
    constexpr std::size_t longest = std::size_t{1} << 16U;
    if (replacement.size() <= longest) {
        return replacement;
    }
    const std::size_t lastOther = replacement.substr(0, longest).find_last_not_of('\\');
    const std::size_t backslashes =
        lastOther == std::string_view::npos ? longest : longest - 1 - lastOther;
    return replacement.substr(0, longest + backslashes % 2);
}

RWCRegexp::ReplacementParts::ReplacementParts(std::string_view replacement) { add(replacement); }

void RWCRegexp::ReplacementParts::add(std::string_view replacement) {
    forEachPart(
        replacement, [this](std::string_view text) { plainBytes += text.size(); },
        [this](std::size_t group) { ++uses[group]; });
}

std::size_t RWCRegexp::ReplacementParts::size(const Groups& groups) const {
    std::size_t size = plainBytes;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        size += uses[i] * groups[i].size();
    }
    return size;
}

std::size_t RWCRegexp::ReplacementParts::groupCount() const {
    std::size_t count = uses.size();
    while (count > 1 && uses[count - 1] == 0) {
        --count;
    }
    return count;
}
