// The string class of the system's interfaces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "rw/RWClassicCString.h"

/// A text: a value of bytes that is copied when the object is.
///
/// Positions and lengths count bytes from 0. Comparison, search and order are byte by byte and
/// regard case; NUL bytes are bytes like others, except in C strings, which they end. Where an
/// operation takes a C string, a null pointer stands for the empty text. Any operation that grows
/// the text may throw std::bad_alloc and then leaves it as it was.
class __attribute__((visibility("default"))) OrvString {
public:
    /// What a search returns when nothing is found: the largest position.
    static constexpr std::size_t notFound = RWClassicCString::notFound;

    OrvString();
    OrvString(const OrvString& other);
    // NOLINTNEXTLINE(google-explicit-constructor): texts are passed as literals everywhere
    OrvString(const char* text);
    explicit OrvString(std::string_view text);
    ~OrvString();

    OrvString& operator=(const OrvString& other);
    OrvString& operator=(const char* text);

    /// The bytes, followed by a NUL; valid until the next change.
    const char* data() const { return string_.data(); }
    std::size_t length() const { return string_.length(); }
    bool isEmpty() const { return string_.length() == 0; }
    std::string_view view() const { return string_.view(); }

    /// Inserts `text` before `position`; a position past the end throws OrvException.
    void insert(std::size_t position, const OrvString& text);

    void append(const OrvString& text);
    void append(const char* text);
    /// Append the first `count` bytes of `text`, or all of it when it is shorter.
    void append(const OrvString& text, std::size_t count);
    void append(const char* text, std::size_t count);

    /// Removes everything from `position` on, or the `count` bytes there, as far as there are so
    /// many; a position past the end throws OrvException.
    void remove(std::size_t position);
    void remove(std::size_t position, std::size_t count);

    /// Replaces every occurrence of `from` by `to`, from left to right; what was put in is not
    /// looked at again. An empty `from` occurs nowhere.
    void replaceStr(const OrvString& from, const OrvString& to);

    /// True when the text begins with `prefix`, which the empty prefix always does.
    bool startsWith(const char* prefix) const;

    /// The position of the first occurrence of `text`.
    std::size_t find(const OrvString& text) const;
    /// The position of the first `byte`, or of the first byte that stands in `set`.
    std::size_t first(char byte) const;
    std::size_t first(const OrvString& set) const;
    /// The position of the last `byte`.
    std::size_t last(char byte) const;

    /// Change the case of the ASCII letters in place; other bytes stay as they are.
    void toUpper();
    void toLower();

    /// A hash of the contents that regards case.
    std::uint32_t hash() const;

    friend bool operator==(const OrvString& left, const OrvString& right) {
        return left.view() == right.view();
    }
    friend bool operator!=(const OrvString& left, const OrvString& right) {
        return left.view() != right.view();
    }
    friend bool operator<(const OrvString& left, const OrvString& right) {
        return left.view() < right.view();
    }
    friend bool operator>(const OrvString& left, const OrvString& right) {
        return left.view() > right.view();
    }

private:
    void checkPosition(std::size_t position) const;

    RWClassicCString string_;
};
