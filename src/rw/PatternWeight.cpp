#include "rw/PatternWeight.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace {

constexpr std::size_t unicodeClass = 256;

struct Repetition {
    std::size_t least;
    std::size_t most;
    std::size_t size;  // of its text, both braces included
};

// What begins with a brace, where that is a repetition.
std::optional<Repetition> repetitionOf(std::string_view text) {
    constexpr unsigned largest = 1000;  // the engine takes no more
    unsigned least = 0;
    const char* const end = text.data() + text.size();
    auto read = std::from_chars(text.data() + 1, end, least);
    unsigned most = least;
    if (read.ec == std::errc() && read.ptr != end && *read.ptr == ',') {
        const auto second = std::from_chars(read.ptr + 1, end, most);
        read.ptr = second.ptr;
    }
    if (read.ec != std::errc() || read.ptr == end || *read.ptr != '}' || most > largest) {
        return std::nullopt;
    }
    return Repetition{least, most, static_cast<std::size_t>(read.ptr + 1 - text.data())};
}

}  // namespace

void PatternWeight::Extent::add(const Extent& other) {
    pieces += other.pieces;
    optional += other.optional;
}

void PatternWeight::Extent::repeat(std::size_t least, std::size_t most) {
    const std::size_t times = std::max<std::size_t>(most, 1);
    pieces *= times;
    optional = optional * times + (most - std::min(least, most));
}

std::size_t PatternWeight::of(std::string_view pattern, std::size_t highest) {
    PatternWeight scale(pattern);
    while (scale.place_ < pattern.size()) {
        scale.readPiece();
        if (scale.least() > highest) {
            return highest + 1;
        }
    }
    while (scale.groups_.size() > 1) {
        scale.closeGroup();
    }
    Extent whole = scale.groups_.back().before;
    whole.add(scale.groups_.back().last);
    return whole.weight();
}

// What the pattern weighs at least, so far as it was read.
std::size_t PatternWeight::least() const {
    const Group& group = groups_.back();
    return groups_.size() - 1 + group.before.weight() + group.last.weight();
}

void PatternWeight::readPiece() {
    switch (pattern_[place_]) {
        case '(':
            groups_.emplace_back();
            ++place_;
            break;
        case ')':
            closeGroup();
            ++place_;
            break;
        case '[':
            readClass();
            break;
        case '\\':
            add(takeEscape());
            break;
        case '{':
            readRepetition();
            break;
        case '?':
            ++groups_.back().last.optional;
            ++place_;
            break;
        default:
            add(1);
            ++place_;
    }
}

// One piece more, which a repetition behind it repeats.
void PatternWeight::add(std::size_t pieces) {
    Group& group = groups_.back();
    group.before.add(group.last);
    group.last = {pieces, 0};
}

// A group is one piece of what stands around it, its parentheses included.
void PatternWeight::closeGroup() {
    if (groups_.size() == 1) {
        return;
    }
    Group closed = groups_.back();
    groups_.pop_back();
    closed.before.add(closed.last);
    add(2 + closed.before.pieces);
    groups_.back().last.optional = closed.before.optional;
}

// Reads the escape that comes next; returns what it weighs. Braces behind it belong to it.
std::size_t PatternWeight::takeEscape() {
    const char escaped = place_ + 1 < pattern_.size() ? pattern_[place_ + 1] : '\0';
    const bool isUnicodeClass = escaped == 'p' || escaped == 'P';
    place_ = std::min(place_ + 2, pattern_.size());
    if (isUnicodeClass || escaped == 'x') {
        const bool hasBraces = pattern_.substr(place_).starts_with('{');
        const std::size_t end = hasBraces ? pattern_.find('}', place_) : place_;
        place_ = end < pattern_.size() ? end + 1 : pattern_.size();
    }
    return isUnicodeClass ? unicodeClass : 1;
}

// Up to the bracket that closes the class, which is not the first character in it.
void PatternWeight::readClass() {
    constexpr std::size_t bytesPerPiece = 2;
    const std::size_t begin = place_;
    std::size_t pieces = 1;
    place_ += pattern_.substr(place_ + 1).starts_with('^') ? 2 : 1;
    place_ += pattern_.substr(place_).starts_with(']') ? 1 : 0;
    while (place_ < pattern_.size() && pattern_[place_] != ']') {
        if (pattern_[place_] == '\\') {
            pieces += takeEscape() - 1;
        } else {
            ++place_;
        }
    }
    place_ = std::min(place_ + 1, pattern_.size());
    add(pieces + (place_ - begin) / bytesPerPiece);
}

void PatternWeight::readRepetition() {
    const std::optional<Repetition> repetition = repetitionOf(pattern_.substr(place_));
    if (repetition) {
        groups_.back().last.repeat(repetition->least, repetition->most);
        place_ += repetition->size;
    } else {
        add(1);
        ++place_;
    }
}
