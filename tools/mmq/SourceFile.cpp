// Marks are placed by what a terminal would show before them: a tab stays a tab, a character of
// several bytes is as wide as it is.
#include "SourceFile.h"

#include <wchar.h>

#include <algorithm>
#include <utility>

namespace mmq {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestLine = 500;  // that is shown whole

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// The bytes of the character at `offset`, and its width on a terminal.
std::pair<std::size_t, int> measure(std::string_view text, std::size_t offset) {
    std::size_t end = offset + 1;
    while (end < text.size() && isContinuation(text[end])) {
        ++end;
    }
    const std::size_t length = end - offset;
    if (length == 1) {
        return {1, 1};
    }
    wchar_t character = 0;
    mbstate_t state{};
    const std::size_t read = mbrtowc(&character, text.data() + offset, length, &state);
    const int width = read == length ? wcwidth(character) : 1;
    return {length, std::max(width, 0)};
}

// A line of `mark` as wide as the text; tabs stay.
std::string maskOf(std::string_view text, char mark) {
    std::string mask;
    for (std::size_t offset = 0; offset < text.size();) {
        const auto [length, width] = measure(text, offset);
        mask.append(text[offset] == '\t' ? "\t"
                                         : std::string(static_cast<std::size_t>(width), mark));
        offset += length;
    }
    return mask;
}

// The window that is shown of a line: all of it, or what stands around an offset.
std::pair<std::size_t, std::size_t> windowOf(std::string_view line, std::size_t offset) {
    constexpr std::size_t around = 75;
    if (line.size() <= longestLine) {
        return {0, line.size()};
    }
    std::size_t first = offset - std::min(offset, around);
    std::size_t last = std::min(line.size(), offset + around);
    while (first > 0 && isContinuation(line[first])) {
        --first;
    }
    while (last < line.size() && isContinuation(line[last])) {
        ++last;
    }
    return {first, last};
}

}  // namespace

// Of a long line, what is far from the point is not looked at.
MarkedLine markAt(std::string_view text, std::size_t point, std::size_t first, std::size_t last) {
    const std::size_t skipped = point - std::min(point, longestLine + 1);
    text = text.substr(skipped, 2 * (longestLine + 1));
    point -= skipped;
    first -= std::min(first, skipped);
    last -= std::min(last, skipped);
    const std::size_t before = text.rfind('\n', point == 0 ? std::string::npos : point - 1);
    const std::size_t start = point == 0 || before == std::string::npos ? 0 : before + 1;
    const std::string_view rest = text.substr(start);
    const std::string_view sourceLine = rest.substr(0, rest.find_first_of("\r\n", point - start));
    const auto [begin, end] = windowOf(sourceLine, point - start);
    const std::size_t from = std::min(std::max(first, start + begin), point);
    const std::size_t to = std::max(std::min(last, start + end), point);
    MarkedLine marked;
    marked.marks = begin > 0 ? "   " : "";
    marked.line = begin > 0 ? "..." : "";
    marked.line += sourceLine.substr(begin, end - begin);
    marked.line += end < sourceLine.size() ? "..." : "";
    marked.marks += maskOf(text.substr(start + begin, from - start - begin), ' ');
    marked.marks += maskOf(text.substr(from, point - from), '~') + "^";
    if (to > point) {
        const std::size_t behind = point + measure(text, point).first;
        marked.marks += maskOf(text.substr(behind, to - std::min(to, behind)), '~');
    }
    return marked;
}

std::string excerptAt(std::string_view text, std::size_t offset) {
    const MarkedLine marked = markAt(text, offset, offset, offset);
    return marked.line + "\n" + marked.marks + "\n";
}

std::size_t endOfLine(std::string_view text, std::size_t offset) {
    constexpr std::size_t farthest = 10'000;
    const std::string_view rest = text.substr(offset, farthest);
    const std::size_t last = rest.substr(0, rest.find_first_of("\r\n")).find_last_not_of(" \t");
    return last == std::string_view::npos ? offset : offset + last + 1;
}

SourceFile::SourceFile(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)), lineStarts_{0} {
    if (text_.rfind(byteOrderMark, 0) == 0) {
        text_.erase(0, byteOrderMark.size());
    }
    for (std::size_t at = text_.find('\n'); at != std::string::npos; at = text_.find('\n', at)) {
        lineStarts_.push_back(++at);
    }
}

TextPlace SourceFile::place(std::size_t offset) const {
    const auto after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    const auto line = static_cast<std::size_t>(after - lineStarts_.begin());
    return {static_cast<std::uint32_t>(line),
            static_cast<std::uint32_t>(offset - lineStarts_[line - 1] + 1)};
}

std::size_t SourceFile::offset(TextPlace place) const {
    return place.line == 0 || place.line > lineStarts_.size()
               ? text_.size()
               : std::min(text_.size(), lineStarts_[place.line - 1] + place.column - 1);
}

TextOrigin TextOrigin::part(std::size_t first, std::size_t length) const {
    TextOrigin result{file, {}};
    if (file != nullptr) {
        const auto begin = offsets.begin() + static_cast<std::ptrdiff_t>(first);
        result.offsets.assign(begin, begin + static_cast<std::ptrdiff_t>(length + 1));
    }
    return result;
}

}  // namespace mmq
