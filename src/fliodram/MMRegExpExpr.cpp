#include "fliodram/MMRegExpExpr.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "fliodram/MMConstantExpr.h"
#include "fliodram/MMEvaluationError.h"
#include "fliodram/MMTargetPrinter.h"

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

std::uint64_t stepsOf(std::uint64_t instructions) {
    constexpr std::uint64_t instructionsPerStep = 16;
    return instructions / instructionsPerStep;
}

std::chrono::nanoseconds timeOf(std::uint64_t instructions) {
    constexpr std::uint64_t nanosecondsPerInstruction = 10;
    return std::chrono::nanoseconds(instructions * nanosecondsPerInstruction);
}

// Runs a search of so many instructions at worst, which counts by them although it mostly takes a
// small part. A small pattern in a short text counts nothing.
template <class Search>
bool runSearch(MMEvaluationContext& context, std::uint64_t worst, const Search& search) {
    constexpr std::uint64_t free = 512;
    if (worst > free) {
        context.checkForesight(stepsOf(worst), timeOf(worst));
        context.step(stepsOf(worst));
    }
    return search();
}

// The time that this thread has spent, whatever else the machine does.
std::chrono::nanoseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// Counts many searches in a long text, each of which might go to its end and mostly does not, by
/// the processor time that they take.
///
/// Lives in a replacement. To read the time costs more than a small search, and is done for several
/// of them at once.
class SearchTimer {
public:
    explicit SearchTimer(MMEvaluationContext& context) : context_(context) {}

    template <class Search>
    bool run(std::uint64_t worst, const Search& search) {
        constexpr std::uint64_t most = std::uint64_t{1} << 21U;  // some 20 ms at worst
        context_.checkForesight(stepsOf(worst), timeOf(worst));
        if (!isRunning_) {
            isRunning_ = true;
            counted_ = processorTime();
        }
        const bool isFound = search();
        uncounted_ += worst;
        if (uncounted_ > most) {
            count();
        }
        return isFound;
    }

    /// Counts what has not been yet.
    void finish() {
        if (uncounted_ != 0) {
            count();
        }
    }

private:
    void count() {
        const std::chrono::nanoseconds now = processorTime();
        context_.countTime(now - counted_);
        counted_ = now;
        uncounted_ = 0;
    }

    MMEvaluationContext& context_;
    std::chrono::nanoseconds counted_{0};  // up to when the thread's time is
    std::uint64_t uncounted_ = 0;          // instructions at worst
    bool isRunning_ = false;
};

/// Writes a text with matches replaced, match by match.
class Replacing {
public:
    Replacing(MMEvaluationContext& context, std::string_view text, std::string_view replacement)
        : context_(context), timer_(context), text_(text), replacement_(replacement) {
        goOverReplacement([this](std::string_view piece) { parts_.add(piece); });
    }

    std::string run(const RWCRegexp& pattern, bool replaceAll) {
        RWCRegexp::Groups groups;
        while (position_ <= text_.size() && search(pattern, groups)) {
            replace(groups);
            if (!replaceAll) {
                break;
            }
        }
        timer_.finish();
        append(text_.substr(copied_));
        return std::move(result_);
    }

private:
    // A search costs what it covers, and may look further than it matches.
    bool search(const RWCRegexp& pattern, RWCRegexp::Groups& groups) {
        const auto find = [&] {
            return pattern.search(text_, position_, groups, parts_.groupCount());
        };
        constexpr std::uint64_t longest = 65536;
        const std::uint64_t worst = pattern.worstSearch(text_.size() - position_);
        const bool isFound =
            worst > longest ? timer_.run(worst, find) : runSearch(context_, worst, find);
        const char* const end =
            isFound ? groups[0].data() + groups[0].size() : text_.data() + text_.size();
        context_.countText(0, static_cast<std::size_t>(end - text_.data()) - position_);
        return isFound;
    }

    // An empty match right behind the last match is none, so that "x*" does not match twice.
    void replace(const RWCRegexp::Groups& groups) {
        const auto start = static_cast<std::size_t>(groups[0].data() - text_.data());
        const std::size_t end = start + groups[0].size();
        if (!(groups[0].empty() && hasMatched_ && start == copied_)) {
            append(text_.substr(copied_, start - copied_));
            context_.countText(result_.size(), parts_.size(groups));
            goOverReplacement([&](std::string_view piece) {
                RWCRegexp::appendReplacement(result_, piece, groups);
            });
            copied_ = end;
            hasMatched_ = true;
        }
        position_ = groups[0].empty() ? nextCharacter(text_, start) : end;
    }

    // Each piece is counted before, so that a long replacement stops at the limits.
    template <class Work>
    void goOverReplacement(const Work& work) {
        std::string_view rest = replacement_;
        while (!rest.empty()) {
            const std::string_view piece = RWCRegexp::firstPiece(rest);
            context_.countBytes(piece.size());
            work(piece);
            rest.remove_prefix(piece.size());
        }
    }

    void append(std::string_view piece) {
        context_.countText(result_.size(), piece.size());
        result_.append(piece);
    }

    MMEvaluationContext& context_;
    SearchTimer timer_;
    std::string_view text_;
    std::string_view replacement_;
    RWCRegexp::ReplacementParts parts_;
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

const RWCRegexp& MMPatternOperand::find(MMEvaluationContext& context) const {
    std::string buffer;
    const std::string_view pattern = pattern_->evaluateText(context, buffer);
    context.countBytes(pattern.size());
    if (!compiled_ || text_ != pattern) {
        compile(context, pattern);
    } else {
        countUse(context);
    }
    if (compiled_->status() != RWCRegexp::ok) {
        std::string sentence = "The pattern ";
        appendQuoted(sentence, pattern);
        sentence += compiled_->status() == RWCRegexp::tooLong ? " is too long." : " is malformed.";
        throwEvaluationFailure(sentence, pattern_.get());
    }
    isReady_ = isConstant_;
    return *compiled_;
}

// A unit of weight is 2 or 3 microseconds. What is too heavy is refused at once.
void MMPatternOperand::compile(MMEvaluationContext& context, std::string_view pattern) const {
    constexpr std::size_t stepsPerUnit = 64;
    constexpr std::size_t microsecondsPerUnit = 3;
    const std::size_t weight = RWCRegexp::weigh(pattern);
    const std::size_t units = weight <= RWCRegexp::heaviest ? weight : 0;
    compiled_.reset();
    steps_ = units * stepsPerUnit;
    context.step(steps_);
    context.checkTime(std::chrono::microseconds(units * microsecondsPerUnit));
    text_ = pattern;
    compiled_.emplace(pattern);
    application_ = context.getApplication();
}

MMRegExpMatchExpr::MMRegExpMatchExpr(const OrvCyclicPtr<MMValueExpr>& pattern,
                                     const OrvCyclicPtr<MMValueExpr>& text)
    : MMValueExpr(MMValue::Kind::boolean), pattern_(*this, pattern), text_(*this, text) {}

bool MMRegExpMatchExpr::evaluateBoolean(MMEvaluationContext& context) const {
    context.checkDepth();
    std::string buffer;
    const std::string_view text = text_->evaluateText(context, buffer);
    context.countText(0, text.size());
    const RWCRegexp& pattern = pattern_.evaluate(context);
    return runSearch(context, pattern.worstMatch(text.size()),
                     [&] { return pattern.matches(text); });
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
    const RWCRegexp& pattern = pattern_.evaluate(context);
    RWCRegexp::Groups groups;
    const auto find = [&] { return pattern.search(text, 0, groups, 1); };
    return runSearch(context, pattern.worstSearch(text.size()), find)
               ? MMValue(std::string(groups[0]))
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
