#include "fliodram/MMRegExpExpr.h"

#include <chrono>

#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"
#include "foundation/TextOutput.h"

namespace {

bool isContinuationByte(std::string_view text, std::size_t position) {
    return position < text.size() && (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80U;
}

// The start of the character after the one at `position`.
std::size_t nextCharacter(std::string_view text, std::size_t position) {
    ++position;
    while (isContinuationByte(text, position)) {
        ++position;
    }
    return position;
}

/// Writes a text with matches replaced, match by match.
class Replacing {
public:
    Replacing(MMEvaluationContext& context, std::string_view text, std::string_view replacement)
        : context_(context), text_(text), replacement_(replacement) {}

    std::string run(const RWCRegexp& pattern, bool replaceAll) {
        RWCRegexp::Groups groups;
        while (position_ <= text_.size() && search(pattern, groups)) {
            replace(groups);
            if (!replaceAll) {
                break;
            }
        }
        append(text_.substr(copied_));
        return std::move(result_);
    }

private:
    // A search costs what it covers. It may look further than it matches, which only the clock can
    // tell; where that might matter, it counts by the time that it took.
    bool search(const RWCRegexp& pattern, RWCRegexp::Groups& groups) {
        constexpr std::size_t longRest = std::size_t{1} << 16U;
        constexpr std::uint64_t nanosecondsPerStep = 4;
        using Clock = std::chrono::steady_clock;
        const bool isLong = text_.size() - position_ > longRest;
        const Clock::time_point start = isLong ? Clock::now() : Clock::time_point();
        const bool isFound = pattern.search(text_, position_, groups);
        const char* const end =
            isFound ? groups[0].data() + groups[0].size() : text_.data() + text_.size();
        context_.countText(0, static_cast<std::size_t>(end - text_.data()) - position_);
        if (isLong) {
            const std::chrono::nanoseconds taken = Clock::now() - start;
            context_.step(static_cast<std::uint64_t>(taken.count()) / nanosecondsPerStep);
        }
        return isFound;
    }

    // An empty match right behind the last match is none, so that "x*" does not match twice.
    void replace(const RWCRegexp::Groups& groups) {
        const auto start = static_cast<std::size_t>(groups[0].data() - text_.data());
        const std::size_t end = start + groups[0].size();
        if (!(groups[0].empty() && hasMatched_ && start == copied_)) {
            append(text_.substr(copied_, start - copied_));
            const std::size_t size = result_.size();
            RWCRegexp::appendReplacement(result_, replacement_, groups);
            context_.countText(size, result_.size() - size);
            copied_ = end;
            hasMatched_ = true;
        }
        position_ = groups[0].empty() ? nextCharacter(text_, start) : end;
    }

    void append(std::string_view piece) {
        context_.countText(result_.size(), piece.size());
        result_.append(piece);
    }

    MMEvaluationContext& context_;
    std::string_view text_;
    std::string_view replacement_;
    std::string result_;
    std::size_t position_ = 0;  // where the next search starts
    std::size_t copied_ = 0;    // up to where the text has been written
    bool hasMatched_ = false;
};

}  // namespace

MMPatternOperand::MMPatternOperand(const OrvCyclicPtrBody& holder,
                                   const OrvCyclicPtr<MMValueExpr>& pattern)
    : pattern_(holder, pattern),
      isConstant_(MMConstantExpr::textOf(pattern.get()).data() != nullptr) {}

const RWCRegexp& MMPatternOperand::compile(MMEvaluationContext& context) const {
    std::string buffer;
    const std::string_view pattern = pattern_->evaluateText(context, buffer);
    if (!compiled_ || text_ != pattern) {
        compiled_.reset();
        text_ = pattern;
        compiled_.emplace(pattern);
    }
    if (compiled_->status() != RWCRegexp::ok) {
        std::string sentence = "The pattern ";
        appendJsonString(sentence, pattern);
        sentence += compiled_->status() == RWCRegexp::tooLong ? " is too long." : " is malformed.";
        throwEvaluationFailure(sentence, pattern_.get());
    }
    isReady_ = isConstant_;
    return *compiled_;
}

MMRegExpMatchExpr::MMRegExpMatchExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                                     const OrvCyclicPtr<MMValueExpr>& text)
    : MMValueExpr(MMValue::Kind::boolean), pattern_(*this, pattern), text_(*this, text) {}

bool MMRegExpMatchExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string buffer;
    const std::string_view text = text_->evaluateText(context, buffer);
    context.countText(0, text.size());
    return pattern_.evaluate(context).matches(text);
}

MMValue MMRegExpMatchExpr::evaluate(MMEvaluationContext& context) const {
    return MMValue(evaluateBoolean(context));
}

void MMRegExpMatchExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMRegExpMatchExpr").operand(pattern_.get()).operand(text_.get()).end();
}

MMRegExpFindExpr::MMRegExpFindExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                                   const OrvCyclicPtr<MMValueExpr>& text)
    : MMValueExpr(MMValue::Kind::text), pattern_(*this, pattern), text_(*this, text) {}

MMValue MMRegExpFindExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string buffer;
    const std::string_view text = text_->evaluateText(context, buffer);
    context.countText(0, text.size());
    RWCRegexp::Groups groups;
    return pattern_.evaluate(context).search(text, 0, groups) ? MMValue(std::string(groups[0]))
                                                              : MMValue::borrow({});
}

void MMRegExpFindExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMRegExpFindExpr").operand(pattern_.get()).operand(text_.get()).end();
}

MMRegExpReplaceExpr::MMRegExpReplaceExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                                         const OrvCyclicPtr<MMValueExpr>& text,
                                         const OrvCyclicPtr<MMValueExpr>& replacement)
    : MMValueExpr(MMValue::Kind::text),
      pattern_(*this, pattern),
      text_(*this, text),
      replacement_(*this, replacement) {}

void MMRegExpReplaceExpr::replaceAll(bool replaceAll) { replaceAll_ = replaceAll; }

MMValue MMRegExpReplaceExpr::evaluate(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string textBuffer;
    std::string replacementBuffer;
    const std::string_view text = text_->evaluateText(context, textBuffer);
    const std::string_view replacement = replacement_->evaluateText(context, replacementBuffer);
    const RWCRegexp& expression = pattern_.evaluate(context);
    return MMValue(Replacing(context, text, replacement).run(expression, replaceAll_));
}

void MMRegExpReplaceExpr::print(MMTargetPrinter& printer) const {
    printer.begin("MMRegExpReplaceExpr");
    printer.operand(pattern_.get()).operand(text_.get()).operand(replacement_.get());
    if (replaceAll_) {
        printer.flag(true, "replaceAll");
    }
    printer.end();
}
