#include "fliodram/MMValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "fliodram/MMEvaluationError.h"
#include "foundation/TextOutput.h"

namespace {

// Fails a conversion: `The text "abc" is not an integer.`
[[noreturn]] void failConversion(std::string_view value, bool isText, const char* what) {
    std::string sentence = isText ? "The text " : "The number ";
    if (isText) {
        appendQuoted(sentence, value);
    } else {
        sentence += value;
    }
    throwEvaluationFailure(sentence + what);
}

std::string_view withoutPlus(std::string_view digits) {
    const bool isSigned = digits.size() > 1 && digits[0] == '+' && digits[1] != '-';
    return isSigned ? digits.substr(1) : digits;
}

// Of a number that no real holds, whether it is too small to be told from zero: by the place of its
// first digit before or behind the point, and its exponent.
bool isTiny(std::string_view number) {
    const std::size_t exponentStart = std::min(number.find('e'), number.find('E'));
    const std::string_view digits = number.substr(0, exponentStart);
    const auto point = static_cast<long>(std::min(digits.find('.'), digits.size()));
    const char* const firstDigit = std::find_if(
        digits.begin(), digits.end(), [](char digit) { return digit >= '1' && digit <= '9'; });
    const auto first = static_cast<long>(firstDigit - digits.data());
    long exponent = 0;
    if (exponentStart != std::string_view::npos) {
        const std::string_view text = withoutPlus(number.substr(exponentStart + 1));
        if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc()) {
            return text[0] == '-';
        }
    }
    return point - first + exponent < 0;
}

// Reads a number that is the whole of a text; `kind` names it where it is none.
template <class Number>
Number readWhole(std::string_view text, const char* kind) {
    const std::string_view digits = withoutPlus(text);
    Number number{};
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ptr != digits.data() + digits.size() || result.ec == std::errc::invalid_argument) {
        failConversion(text, true, (std::string(" is not a") + kind + ".").c_str());
    }
    if (result.ec != std::errc() && !isTiny(digits)) {
        failConversion(text, true, " is out of range.");
    }
    return result.ec == std::errc() ? number : Number{};
}

// Of the names of what is no finite number, only those that asString() writes are read, with or
// without a sign.
bool isSpelledOut(std::string_view text) {
    const bool isSigned = !text.empty() && (text[0] == '+' || text[0] == '-');
    const std::string_view name = text.substr(isSigned ? 1 : 0);
    const bool isName = std::string_view("iInN").find(name.substr(0, 1)) != std::string_view::npos;
    return isName && !name.empty() && name != "inf" && name != "nan";
}

double readReal(std::string_view text) {
    if (isSpelledOut(text)) {
        failConversion(text, true, " is not a real.");
    }
    return readWhole<double>(text, " real");
}

bool readBoolean(std::string_view text) {
    if (text != "true" && text != "false") {
        failConversion(text, true, " is not a boolean.");
    }
    return text == "true";
}

int truncated(double number) {
    // Both bounds are exact as reals; a NaN fails both comparisons.
    if (!(number > -2147483649.0 && number < 2147483648.0)) {
        std::string digits;
        appendReal(digits, number);
        failConversion(digits, false, " is out of the range of integers.");
    }
    return static_cast<int>(number);
}

}  // namespace

std::string_view MMValue::asText(std::string& buffer) const {
    switch (getKind()) {
        case Kind::boolean:
            return getBoolean() ? "true" : "false";
        case Kind::integer:
            buffer.clear();
            appendInteger(buffer, getInteger());
            return buffer;
        case Kind::real:
            buffer.clear();
            appendReal(buffer, getReal());
            return buffer;
        case Kind::text:
            break;
    }
    return getText();
}

std::string_view MMValue::releaseText(std::string& buffer) {
    if (std::string* const own = std::get_if<std::string>(&content_)) {
        buffer = std::move(*own);
        return buffer;
    }
    return asText(buffer);
}

// The library's variant destroys what it did not make where the copy of a text throws.
MMValue::MMValue(const MMValue& other) : content_(false) {
    if (const std::string* const text = std::get_if<std::string>(&other.content_)) {
        std::string copy(*text);
        content_ = std::move(copy);
    } else {
        content_ = other.content_;
    }
}

OrvString MMValue::asString() const {
    std::string buffer;
    return OrvString(asText(buffer));
}

int MMValue::toInteger() const {
    switch (getKind()) {
        case Kind::boolean:
            return getBoolean() ? 1 : 0;
        case Kind::integer:
            return getInteger();
        case Kind::real:
            return truncated(getReal());
        case Kind::text:
            break;
    }
    return readWhole<int>(getText(), "n integer");
}

double MMValue::toReal() const {
    switch (getKind()) {
        case Kind::boolean:
            return getBoolean() ? 1.0 : 0.0;
        case Kind::integer:
            return getInteger();
        case Kind::real:
            return getReal();
        case Kind::text:
            break;
    }
    return readReal(getText());
}

bool MMValue::toBoolean() const {
    switch (getKind()) {
        case Kind::boolean:
            return getBoolean();
        case Kind::integer:
            return getInteger() != 0;
        case Kind::real:
            return getReal() != 0.0;
        case Kind::text:
            break;
    }
    return readBoolean(getText());
}

MMValue MMValue::convertedTo(MMValueType type) const {
    switch (type) {
        case MM_INTEGER:
            return MMValue(toInteger());
        case MM_REAL:
            return MMValue(toReal());
        case MM_BOOLEAN:
            return MMValue(toBoolean());
        case MM_STRING:
            break;
    }
    return getKind() == Kind::text ? *this : MMValue(asString());
}

std::partial_ordering MMValue::compare(const MMValue& other) const {
    if (getKind() != other.getKind()) {
        std::string left;
        std::string right;
        return asText(left).compare(other.asText(right)) <=> 0;
    }
    switch (getKind()) {
        case Kind::boolean:
            return static_cast<int>(getBoolean()) <=> static_cast<int>(other.getBoolean());
        case Kind::integer:
            return getInteger() <=> other.getInteger();
        case Kind::real:
            return getReal() <=> other.getReal();
        case Kind::text:
            break;
    }
    return getText().compare(other.getText()) <=> 0;
}

void MMValue::own() {
    if (const std::string_view* borrowed = std::get_if<std::string_view>(&content_)) {
        content_ = std::string(*borrowed);
    }
}

void MMValue::appendText(std::string_view text) {
    if (const std::string_view* borrowed = std::get_if<std::string_view>(&content_)) {
        std::string joined;
        joined.reserve(borrowed->size() + text.size());
        joined.append(*borrowed).append(text);
        content_ = std::move(joined);
    } else {
        std::get<std::string>(content_).append(text);
    }
}
