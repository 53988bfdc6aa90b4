#include "lint/Escaping.h"

#include "repository/TextEncoding.h"

namespace mmq {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isControl(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x20U || code == 0x7FU;
}

// Control characters above ASCII, U+0080 to U+009F, are C2 and a byte in UTF-8.
bool isHighControl(std::string_view rest) {
    return rest.size() > 1 && rest[0] == '\xC2' && static_cast<unsigned char>(rest[1]) < 0xA0U;
}

void appendHex(std::string& text, char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto code = static_cast<unsigned char>(byte);
    text.append("\\x");
    text.push_back(digits[code >> 4U]);
    text.push_back(digits[code & 0xFU]);
}

// U+FFFE and U+FFFF, which XML does not know.
bool isNoXmlCharacter(std::string_view rest) {
    const std::string_view three = rest.substr(0, 3);
    return three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF";
}

std::string_view xmlEntity(char byte) {
    switch (byte) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        case '\n':
            return "&#10;";
        case '\r':
            return "&#13;";
        case '\t':
            return "&#9;";
        default:
            return isControl(byte) ? replacement : std::string_view();
    }
}

}  // namespace

std::string wellFormed(std::string_view text) {
    std::string result;
    for (;;) {
        const std::size_t bad = findInvalidUtf8(text);
        result.append(text.substr(0, bad));
        if (bad == text.size()) {
            return result;
        }
        result.append(replacement);
        text.remove_prefix(bad + 1);
    }
}

std::string onOneLine(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (byte == '\n' || byte == '\t') {
            result.append(byte == '\n' ? "\\n" : "\\t");
        } else if (isControl(byte)) {
            appendHex(result, byte);
        } else if (isHighControl(text.substr(at))) {
            appendHex(result, text[++at]);
        } else {
            result.push_back(byte);
        }
    }
    return result;
}

std::string xmlText(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view entity = xmlEntity(text[at]);
        if (isNoXmlCharacter(text.substr(at))) {
            result.append(replacement);
            at += 2;
        } else if (entity.empty()) {
            result.push_back(text[at]);
        } else {
            result.append(entity);
        }
    }
    return result;
}

}  // namespace mmq
