#include "lsp/MessageChannel.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <istream>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace mmq {

namespace {

constexpr std::size_t longestContent = std::size_t{256} << 20U;

// What a line says of the length of the content. The name of the field may stand anywhere in the
// line: before it may be the content of a message whose length nobody knew.
std::optional<std::size_t> contentLength(const std::string& line) {
    constexpr std::string_view name = "content-length:";
    const auto found = std::find_end(
        line.begin(), line.end(), name.begin(), name.end(),
        [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
    if (found == line.end()) {
        return {};
    }
    std::string_view value(line);
    value.remove_prefix(static_cast<std::size_t>(found - line.begin()) + name.size());
    value.remove_prefix(std::min(value.size(), value.find_first_not_of(" \t")));
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), length);
    const auto rest = value.substr(static_cast<std::size_t>(end - value.data()));
    const bool isNumber =
        error == std::errc() && rest.find_first_not_of(" \t") == std::string_view::npos;
    return isNumber ? std::optional(length) : std::nullopt;
}

}  // namespace

// Of a line that is longer than any header, only the end is kept.
bool MessageChannel::readLine(std::string& line) {
    constexpr std::size_t longestLine = 4096;
    constexpr int end = std::char_traits<char>::eof();
    line.clear();
    std::streambuf& buffer = *input_.rdbuf();
    int byte = buffer.sbumpc();
    for (; byte != end && byte != '\n'; byte = buffer.sbumpc()) {
        if (line.size() == longestLine) {
            line.erase(0, longestLine / 2);
        }
        line.push_back(static_cast<char>(byte));
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return byte != end;
}

MessageChannel::Outcome MessageChannel::read(std::string& content) {
    std::optional<std::size_t> length;
    bool hasHeader = false;
    std::string line;
    while (readLine(line)) {
        if (!line.empty()) {
            hasHeader = true;
            const std::optional<std::size_t> told = contentLength(line);
            length = told ? told : length;
        } else if (hasHeader) {
            return length ? readContent(*length, content) : Outcome::malformed;
        }
    }
    return Outcome::end;
}

// Memory is taken as the content comes, not for what a header tells.
MessageChannel::Outcome MessageChannel::readContent(std::size_t length, std::string& content) {
    constexpr std::size_t pieceSize = std::size_t{64} << 10U;
    const bool isTooLong = length > longestContent;
    content.clear();
    while (length > 0) {
        const std::size_t begin = isTooLong ? 0 : content.size();
        const std::size_t size = std::min(length, pieceSize);
        content.resize(begin + size);
        const auto count = input_.rdbuf()->sgetn(&content[begin], static_cast<long>(size));
        if (count < static_cast<long>(size)) {
            return Outcome::end;
        }
        length -= size;
    }
    return isTooLong ? Outcome::malformed : Outcome::message;
}

bool MessageChannel::hasMore() const { return input_.rdbuf()->in_avail() > 0; }

void MessageChannel::write(const std::string& content) {
    output_ << "Content-Length: " << content.size() << "\r\n\r\n" << content << std::flush;
}

}  // namespace mmq
