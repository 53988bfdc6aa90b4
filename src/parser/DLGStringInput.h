// The input of a lexer: a text in memory.
#pragma once

#include <cstddef>
#include <string_view>

/// Gives the bytes of a C string one after the other, up to its NUL. Borrows the text.
class DLGStringInput {
public:
    explicit DLGStringInput(const char* text) : start_(text), next_(text) {}

    /// The next byte without taking it, from 0 to 255; -1 at the end.
    int peek() const { return *next_ != '\0' ? static_cast<unsigned char>(*next_) : -1; }
    /// Takes the byte that peek() shows, which is not the end.
    void advance() { ++next_; }

    /// The byte that comes next, with the rest of the text and its NUL behind it.
    const char* rest() const { return next_; }
    /// Takes all bytes before `rest`, which is a place in the rest of the text.
    void advanceTo(const char* rest) { next_ = rest; }

    /// How many bytes were taken.
    std::size_t offset() const { return offsetOf(next_); }
    /// How many bytes stand before a place in the text.
    std::size_t offsetOf(const char* place) const {
        return static_cast<std::size_t>(place - start_);
    }
    /// The bytes that were taken after the first `offset`.
    std::string_view takenFrom(std::size_t offset) const {
        return {start_ + offset, this->offset() - offset};
    }

private:
    const char* start_;
    const char* next_;
};
