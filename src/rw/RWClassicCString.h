// The classic string of the string library: the storage behind OrvString.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A value of bytes, of any length, NUL bytes included.
///
/// Positions and lengths count bytes; case and order are those of bytes, whatever the locale. A
/// null C string counts as the empty one. Positions past the end are the caller's error and are
/// taken as the end.
class __attribute__((visibility("default"))) RWClassicCString {
public:
    /// What a search returns when nothing is found.
    static constexpr std::size_t notFound = std::string::npos;

    RWClassicCString() = default;
    explicit RWClassicCString(const char* text) : text_(text != nullptr ? text : "") {}
    explicit RWClassicCString(std::string_view text) : text_(text) {}

    const char* data() const { return text_.c_str(); }
    std::size_t length() const { return text_.size(); }
    std::string_view view() const { return text_; }

    void assign(std::string_view text) { text_.assign(text); }
    void append(std::string_view text) { text_.append(text); }
    void insert(std::size_t position, std::string_view text);
    void remove(std::size_t position, std::size_t count);

    /// The position of the first occurrence of `text` at or after `from`, or notFound.
    std::size_t index(std::string_view text, std::size_t from = 0) const;
    /// The position of the first byte that is one of `set`, or notFound.
    std::size_t first(std::string_view set) const { return text_.find_first_of(set); }
    std::size_t last(char byte) const { return text_.rfind(byte); }

    /// Change the case of the ASCII letters.
    void toUpper();
    void toLower();

    /// A hash of all bytes (FNV-1a, 32 bits), the same in every process.
    std::uint32_t hash() const;

private:
    std::string text_;
};
