#include "foundation/TextOutput.h"

#include <array>
#include <charconv>
#include <cmath>
#include <ostream>

namespace {

template <class... Number>
void appendNumber(std::string& text, Number... number) {
    std::array<char, 32> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled next
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number...);
    text.append(digits.data(), result.ptr);
}

// The sign of a NaN means nothing, and which one an operation gives depends on the processor.
double withoutSignOfNaN(double value) { return std::isnan(value) ? std::abs(value) : value; }

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

// The length of the UTF-8 sequence at the front of `rest`, or 0 where there is none.
std::size_t sequenceLength(std::string_view rest) {
    const auto byte = [&rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80U                    ? 1U
                               : lead >= 0xC2U && lead < 0xE0U ? 2U
                               : lead >= 0xE0U && lead < 0xF0U ? 3U
                               : lead >= 0xF0U && lead < 0xF5U ? 4U
                                                               : 0U;
    if (length > rest.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(rest[i])) {
            return 0;
        }
    }
    const bool isOverlong =
        (lead == 0xE0U && byte(1) < 0xA0U) || (lead == 0xF0U && byte(1) < 0x90U);
    const bool isOutside =
        (lead == 0xEDU && byte(1) >= 0xA0U) || (lead == 0xF4U && byte(1) >= 0x90U);
    return isOverlong || isOutside ? 0 : length;
}

void appendEscape(std::string& text, char byte) {
    static constexpr std::string_view digits = "0123456789abcdef";
    switch (byte) {
        case '"':
            text.append("\\\"");
            break;
        case '\\':
            text.append("\\\\");
            break;
        case '\n':
            text.append("\\n");
            break;
        case '\r':
            text.append("\\r");
            break;
        case '\t':
            text.append("\\t");
            break;
        default:
            text.append("\\u00");
            text.push_back(digits[static_cast<unsigned char>(byte) >> 4U]);
            text.push_back(digits[static_cast<unsigned char>(byte) & 0xFU]);
    }
}

}  // namespace

void appendInteger(std::string& text, long long value) { appendNumber(text, value); }
void appendReal(std::string& text, double value) { appendNumber(text, withoutSignOfNaN(value)); }

void appendRoundedReal(std::string& text, double value) {
    appendNumber(text, withoutSignOfNaN(value), std::chars_format::general, 6);
}

void appendJsonString(std::string& text, std::string_view content) {
    text.push_back('"');
    while (!content.empty()) {
        const char byte = content.front();
        std::size_t length = 1;
        if (byte == '"' || byte == '\\' || static_cast<unsigned char>(byte) < 0x20U) {
            appendEscape(text, byte);
        } else if (const std::size_t sequence = sequenceLength(content); sequence > 0) {
            text.append(content.substr(0, sequence));
            length = sequence;
        } else {
            text.append("\\ufffd");
        }
        content.remove_prefix(length);
    }
    text.push_back('"');
}

void writeText(std::ostream& stream, std::string_view text) {
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}
