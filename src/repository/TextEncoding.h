// Finds out how a document is encoded, and converts it to UTF-8.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

/// The encoding of a document, found by its first bytes.
struct TextEncoding {
    /// The name, as the document declares it or as a byte order mark tells.
    std::string name;
    /// The length of the byte order mark.
    std::size_t markLength = 0;

    /// A byte order mark, else the zero bytes around the first "<", else the declaration of an XML
    /// document; UTF-8 without any of them.
    static TextEncoding detect(std::string_view bytes);

    /// True for UTF-8 and for its part US-ASCII, which need no conversion.
    bool isUtf8() const;
    bool isAscii() const;
};

/// The result of a conversion: the text in UTF-8, and whether all of it could be converted; where
/// not, it ends before the first bad byte.
struct ConvertedText {
    std::unique_ptr<char[]> buffer;
    std::size_t size = 0;
    bool isComplete = false;
};

/// Converts bytes of the named encoding. The result has no buffer where nobody knows the encoding.
ConvertedText convertToUtf8(std::string_view bytes, const std::string& encoding);

/// The offset of the first byte that is not part of well-formed UTF-8 (of at most U+10FFFF,
/// without surrogates), the size of the text if there is none.
std::size_t findInvalidUtf8(std::string_view text);
/// The same for bytes above 127.
std::size_t findNonAscii(std::string_view text);
