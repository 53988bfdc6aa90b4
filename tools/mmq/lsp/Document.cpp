#include "lsp/Document.h"

#include <algorithm>
#include <utility>

namespace mmq {

Document::Document(std::string text, PositionEncoding encoding)
    : text_(std::move(text)), encoding_(encoding) {
    findLines();
}

void Document::findLines() {
    lineStarts_ = {0};
    for (std::size_t at = 0; at < text_.size(); ++at) {
        const bool isCrLf = text_[at] == '\r' && at + 1 < text_.size() && text_[at + 1] == '\n';
        if (text_[at] == '\n' || (text_[at] == '\r' && !isCrLf)) {
            lineStarts_.push_back(at + 1);
        }
    }
}

// Without what ends it.
std::size_t Document::endOfLine(std::size_t line) const {
    return std::min(text_.size(), text_.find_first_of("\r\n", lineStarts_[line]));
}

// How many units the byte stands for: those of its character, if it is the first one of it.
std::uint32_t Document::unitsAt(std::size_t offset) const {
    const auto byte = static_cast<unsigned char>(text_[offset]);
    if (encoding_ == PositionEncoding::utf8) {
        return 1;
    }
    const bool isContinuation = (byte & 0xC0U) == 0x80U;
    return isContinuation ? 0 : byte >= 0xF0U ? 2 : 1;
}

std::size_t Document::offset(const Position& position) const {
    if (position.line >= lineStarts_.size()) {
        return text_.size();
    }
    const std::size_t end = endOfLine(position.line);
    std::size_t at = lineStarts_[position.line];
    std::size_t character = at;  // where the one begins that `at` is in
    std::uint32_t units = 0;
    for (; at < end; ++at) {
        const bool isFirst = (static_cast<unsigned char>(text_[at]) & 0xC0U) != 0x80U;
        character = isFirst ? at : character;
        if (isFirst && units == position.character) {
            return at;
        }
        units += unitsAt(at);
        if (units > position.character) {
            return character;
        }
    }
    return end;
}

Position Document::position(std::size_t offset) const {
    const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    const auto line = static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
    const std::size_t end = std::min(offset, endOfLine(line));
    Position position{static_cast<std::uint32_t>(line), 0};
    for (std::size_t at = lineStarts_[line]; at < end; ++at) {
        position.character += unitsAt(at);
    }
    return position;
}

void Document::change(const std::optional<PositionRange>& range, const std::string& text) {
    const std::size_t start = range ? offset(range->start) : 0;
    const std::size_t end = range ? std::max(start, offset(range->end)) : text_.size();
    text_.replace(start, end - start, text);
    findLines();
}

}  // namespace mmq
