// The value that value expressions carry: a boolean, an integer, a real or a text.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "foundation/OrvString.h"

/// The types to which a value can be converted.
enum MMValueType { MM_INTEGER = 1, MM_REAL = 2, MM_STRING = 3, MM_BOOLEAN = 4 };

/// One value, copied when the object is.
///
/// A text is either the value's own or borrowed: a view of the model or of an expression, valid
/// as long as those are. What an abstraction returns to a host is always its own.
class __attribute__((visibility("default"))) MMValue {
public:
    enum class Kind : std::uint8_t { boolean, integer, real, text };

    explicit MMValue(bool value) : content_(value) {}
    explicit MMValue(int value) : content_(value) {}
    explicit MMValue(double value) : content_(value) {}
    explicit MMValue(const OrvString& text)
        : content_(std::in_place_type<std::string>, text.view()) {}
    explicit MMValue(const char* text) : content_(std::in_place_type<std::string>, text) {}
    MMValue(const char* text, std::size_t size)
        : content_(std::in_place_type<std::string>, text, size) {}
    explicit MMValue(std::string&& text) : content_(std::move(text)) {}
    MMValue(const MMValue& other);
    MMValue(MMValue&& other) noexcept = default;
    MMValue& operator=(const MMValue& other) { return *this = MMValue(other); }
    MMValue& operator=(MMValue&& other) noexcept = default;
    ~MMValue() = default;

    /// A text that lives elsewhere.
    static MMValue borrow(std::string_view text) { return MMValue(text, 0); }

    Kind getKind() const {
        return content_.index() < 3 ? static_cast<Kind>(content_.index()) : Kind::text;
    }

    /// The content of a value of that kind; std::bad_variant_access for any other.
    bool getBoolean() const { return std::get<bool>(content_); }
    int getInteger() const { return std::get<int>(content_); }
    double getReal() const { return std::get<double>(content_); }
    std::string_view getText() const {
        const std::string_view* borrowed = std::get_if<std::string_view>(&content_);
        return borrowed != nullptr ? *borrowed : std::get<std::string>(content_);
    }

    /// The value as a text: true or false; an integer in decimal; a real as the shortest text that
    /// reads back the same; a text as it is.
    OrvString asString() const;

    /// The same as a view, of the value itself or of `buffer`, which it fills when it must.
    std::string_view asText(std::string& buffer) const;

    /// The same of a value that goes: a text of its own moves into `buffer`.
    std::string_view releaseText(std::string& buffer);

    /// The value converted. A text must be a number, or true or false, as a whole; a real loses
    /// its fraction and must then fit an integer; a boolean counts as 1 or 0, a number as "is not
    /// zero". Where it cannot be converted, throws an MMEvaluationError that quotes it.
    MMValue convertedTo(MMValueType type) const;
    bool toBoolean() const;

    /// Compares values: numbers as numbers, texts by their bytes, false before true; values of
    /// different kinds by their texts. A NaN is unordered.
    std::partial_ordering compare(const MMValue& other) const;

    /// Whether it is a text that lives elsewhere.
    bool isBorrowed() const { return std::holds_alternative<std::string_view>(content_); }
    /// The bytes of a text of its own; 0 for any other value.
    std::size_t ownSize() const {
        const std::string* const text = std::get_if<std::string>(&content_);
        return text != nullptr ? text->capacity() : 0;
    }
    /// Makes a borrowed text the value's own.
    void own();
    /// Appends to a text, which becomes the value's own; std::bad_variant_access for other kinds.
    void appendText(std::string_view text);

private:
    MMValue(std::string_view text, int /*borrowed*/) : content_(text) {}

    int toInteger() const;
    double toReal() const;

    std::variant<bool, int, double, std::string_view, std::string> content_;
};
