#include "rw/RWCRegexp.h"

#include <re2/re2.h>

class RWCRegexp::Engine {
public:
    explicit Engine(std::string_view pattern)
        : expression_(re2::StringPiece(pattern.data(), pattern.size()), quietOptions()) {}

    const RE2& expression() const { return expression_; }

private:
    static RE2::Options quietOptions() {
        RE2::Options options;
        options.set_log_errors(false);
        return options;
    }

    RE2 expression_;
};

RWCRegexp::RWCRegexp(std::string_view pattern) : engine_(std::make_unique<Engine>(pattern)) {}
RWCRegexp::RWCRegexp(RWCRegexp&&) noexcept = default;
RWCRegexp& RWCRegexp::operator=(RWCRegexp&&) noexcept = default;
RWCRegexp::~RWCRegexp() = default;

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

bool RWCRegexp::matches(std::string_view subject) const {
    return engine_->expression().ok() &&
           engine_->expression().Match(re2::StringPiece(subject.data(), subject.size()), 0,
                                       subject.size(), RE2::UNANCHORED, nullptr, 0);
}

bool RWCRegexp::search(std::string_view subject, std::size_t start, Groups& groups) const {
    const RE2& expression = engine_->expression();
    if (!expression.ok() || start > subject.size()) {
        return false;
    }
    std::array<re2::StringPiece, std::tuple_size_v<Groups>> pieces;
    const int wanted =
        std::min(expression.NumberOfCapturingGroups() + 1, static_cast<int>(pieces.size()));
    if (!expression.Match(re2::StringPiece(subject.data(), subject.size()), start, subject.size(),
                          RE2::UNANCHORED, pieces.data(), wanted)) {
        return false;
    }
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        groups[i] = std::string_view(pieces[i].data(), pieces[i].size());
    }
    return true;
}

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
