#include "repository/TextEncoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>
#include <system_error>

namespace {

struct Mark {
    std::string_view bytes;
    const char* encoding;
    std::size_t length;  // of the mark; 0 where the bytes are the document's own
};

using std::string_view_literals::operator""sv;

// Longer marks first: UTF-32 begins like UTF-16.
constexpr std::array<Mark, 9> marks{{{"\xFF\xFE\0\0"sv, "UTF-32LE", 4},
                                     {"\0\0\xFE\xFF"sv, "UTF-32BE", 4},
                                     {"<\0\0\0"sv, "UTF-32LE", 0},
                                     {"\0\0\0<"sv, "UTF-32BE", 0},
                                     {"\xEF\xBB\xBF"sv, "UTF-8", 3},
                                     {"\xFF\xFE"sv, "UTF-16LE", 2},
                                     {"\xFE\xFF"sv, "UTF-16BE", 2},
                                     {"<\0"sv, "UTF-16LE", 0},
                                     {"\0<"sv, "UTF-16BE", 0}}};

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

// The value of encoding="..." in an XML declaration, empty where there is none.
std::string_view declaredEncoding(std::string_view bytes) {
    constexpr std::string_view blanks = " \t\r\n";
    if (bytes.substr(0, 5) != "<?xml") {
        return {};
    }
    const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
    std::size_t at = declaration.find("encoding");
    if (at == std::string_view::npos) {
        return {};
    }
    at = declaration.find_first_not_of(blanks, at + 8);
    if (at == std::string_view::npos || declaration[at] != '=') {
        return {};
    }
    at = declaration.find_first_not_of(blanks, at + 1);
    if (at == std::string_view::npos || (declaration[at] != '"' && declaration[at] != '\'')) {
        return {};
    }
    const std::string_view rest = declaration.substr(at + 1);
    return rest.substr(0, std::min(rest.size(), rest.find(declaration[at])));
}

// A converter of the system, closed at the end.
class Converter {
public:
    /// Where memory is too short to load a converter, the system mostly says that nobody knows the
    /// encoding, and is asked again before that is believed.
    explicit Converter(const std::string& encoding)
        : handle_(iconv_open("UTF-8", encoding.c_str())) {
        if (!isOpen()) {
            handle_ = iconv_open("UTF-8", encoding.c_str());
        }
        if (!isOpen() && errno == ENOMEM) {
            throw std::bad_alloc();
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (isOpen()) {
            iconv_close(handle_);
        }
    }

    bool isOpen() const {
        return handle_ != reinterpret_cast<iconv_t>(-1);  // NOLINT: the interface's own value
    }
    // Moves on both texts; the error number, 0 when all of the input is converted.
    int convert(char*& in, std::size_t& inLeft, char*& out, std::size_t& outLeft) {
        return iconv(handle_, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) ? errno
                                                                                            : 0;
    }

private:
    iconv_t handle_;
};

// The length of the well-formed sequence that begins with a byte above 127, or 0. A zero byte
// behind the text ends a sequence that is cut short.
std::size_t sequenceLength(const unsigned char* p) {
    const auto isTail = [](unsigned char c) { return (c & 0xC0U) == 0x80U; };
    if (p[0] >= 0xC2 && p[0] <= 0xDF) {
        return isTail(p[1]) ? 2 : 0;
    }
    if (p[0] >= 0xE0 && p[0] <= 0xEF) {
        const bool isShort = p[0] == 0xE0 && p[1] < 0xA0;
        const bool isSurrogate = p[0] == 0xED && p[1] > 0x9F;
        return isTail(p[1]) && isTail(p[2]) && !isShort && !isSurrogate ? 3 : 0;
    }
    if (p[0] >= 0xF0 && p[0] <= 0xF4) {
        const bool isShort = p[0] == 0xF0 && p[1] < 0x90;
        const bool isTooLarge = p[0] == 0xF4 && p[1] > 0x8F;
        return isTail(p[1]) && isTail(p[2]) && isTail(p[3]) && !isShort && !isTooLarge ? 4 : 0;
    }
    return 0;
}

}  // namespace

TextEncoding TextEncoding::detect(std::string_view bytes) {
    for (const Mark& mark : marks) {
        if (bytes.substr(0, mark.bytes.size()) == mark.bytes) {
            return {mark.encoding, mark.length};
        }
    }
    const std::string_view declared = declaredEncoding(bytes);
    return {declared.empty() ? "UTF-8" : std::string(declared), 0};
}

bool TextEncoding::isUtf8() const {
    return equalsIgnoringCase(name, "UTF-8") || equalsIgnoringCase(name, "UTF8");
}

bool TextEncoding::isAscii() const {
    return equalsIgnoringCase(name, "US-ASCII") || equalsIgnoringCase(name, "ASCII");
}

ConvertedText convertToUtf8(std::string_view bytes, const std::string& encoding) {
    Converter converter(encoding);
    ConvertedText result;
    if (encoding.find('/') != std::string::npos || !converter.isOpen()) {
        return result;
    }
    std::size_t capacity = bytes.size() + bytes.size() / 8 + 16;
    result.buffer = std::make_unique_for_overwrite<char[]>(capacity);
    char* in = const_cast<char*>(bytes.data());  // the interface's type; it writes nothing there
    std::size_t inLeft = bytes.size();
    for (;;) {
        char* out = result.buffer.get() + result.size;
        std::size_t outLeft = capacity - result.size;
        const int error = converter.convert(in, inLeft, out, outLeft);
        result.size = static_cast<std::size_t>(out - result.buffer.get());
        if (error != E2BIG) {
            result.isComplete = error == 0;
            return result;
        }
        capacity *= 2;
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        std::memcpy(larger.get(), result.buffer.get(), result.size);
        result.buffer = std::move(larger);
    }
}

std::size_t findNonAscii(std::string_view text) {
    constexpr std::size_t step = 64;
    std::size_t at = 0;
    for (; at + step <= text.size(); at += step) {
        unsigned char all = 0;
        for (std::size_t i = 0; i < step; ++i) {
            all |= static_cast<unsigned char>(text[at + i]);
        }
        if (all >= 0x80) {
            break;
        }
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) {
        ++at;
    }
    return at;
}

std::size_t findInvalidUtf8(std::string_view text) {
    std::size_t at = 0;
    for (;;) {
        at += findNonAscii(text.substr(at));
        if (at == text.size()) {
            return at;
        }
        const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
        const std::size_t length = sequenceLength(bytes + at);
        if (length == 0) {
            return at;
        }
        at += length;
    }
}
