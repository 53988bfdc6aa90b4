#include "rw/RWCRegexp.h"

#include <re2/re2.h>

#include <optional>

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
    requireMemory(pattern.size());
    const EngineEntry entry;
    engine_ = std::make_unique<Engine>(pattern);
}
RWCRegexp::RWCRegexp(RWCRegexp&&) noexcept = default;
RWCRegexp::~RWCRegexp() {
    const EngineEntry entry;
    engine_.reset();
}

RWCRegexp::StatVal RWCRegexp::status() const {
    switch (engine_->expression().error_code()) {
        case RE2::NoError:
            return ok;
        case RE2::ErrorPatternTooLarge:
            return tooLong;
        default:
            return illegal;
    }
}

bool RWCRegexp::matches(std::string_view subject) const { return engine_->matches(subject); }

bool RWCRegexp::search(std::string_view subject, std::size_t start, Groups& groups) const {
    const RE2& expression = engine_->expression();
    if (start > subject.size()) {
        return false;
    }
    std::array<re2::StringPiece, std::tuple_size_v<Groups>> pieces;
    const int wanted =
        std::min(expression.NumberOfCapturingGroups() + 1, static_cast<int>(pieces.size()));
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
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char next = i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        if (replacement[i] == '\\' && next >= '0' && next <= '9') {
            result.append(groups[static_cast<std::size_t>(next - '0')]);
            ++i;
        } else {
            result.push_back(replacement[i]);
            i += replacement[i] == '\\' && next == '\\' ? 1U : 0U;
        }
    }
}
