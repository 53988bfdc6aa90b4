// The functions and operators, one small function each. Texts are checked against patterns before
// they are read as numbers; numbers are rounded by the standard library, and regular expressions
// are searched by the string library; everything else is plain loops.
#include "evaluation/NaiveValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <compare>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <type_traits>

#include "rw/RWCRegexp.h"

namespace {

/// Compiled expressions write a NaN with the sign that the machine gave it, such as "-nan". As long
/// as they do, nothing is compared that writes one.
constexpr bool isTextOfNaNCompared = false;

/// A whole number as an integer, if it has 32 bits.
int inRange(double value) {
    if (!(std::abs(value + 0.5) < 2147483648.0)) {
        throw NaiveFailure{"out of the range of integers"};
    }
    return static_cast<int>(value);
}

// --- regular expressions ------------------------------------------------------------------------

RWCRegexp compiled(const std::string& pattern) {
    RWCRegexp expression(pattern);
    if (expression.status() != RWCRegexp::ok) {
        throw NaiveFailure{"malformed pattern " + pattern};
    }
    return expression;
}

std::string found(const std::string& pattern, const std::string& text) {
    RWCRegexp::Groups groups;
    return compiled(pattern).search(text, 0, groups) ? std::string(groups[0]) : "";
}

std::string filledIn(const std::string& replacement, const RWCRegexp::Groups& groups) {
    std::string text;
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char next = i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        if (replacement[i] != '\\' || (next != '\\' && (next < '0' || next > '9'))) {
            text += replacement[i];
        } else {
            text += next == '\\' ? "\\" : groups[static_cast<std::size_t>(next - '0')];
            ++i;
        }
    }
    return text;
}

std::string replaced(const NaiveArguments& arguments, bool isEvery) {
    const RWCRegexp expression = compiled(std::get<std::string>(arguments[0]));
    const auto& text = std::get<std::string>(arguments[1]);
    std::string result;
    std::size_t copied = 0;                   // what stands before is in the result
    std::size_t lastEnd = std::string::npos;  // of the last match
    RWCRegexp::Groups groups;
    for (std::size_t start = 0; start <= text.size() && expression.search(text, start, groups);) {
        const auto first = static_cast<std::size_t>(groups[0].data() - text.data());
        const std::size_t last = start = first + groups[0].size();
        if (first == last) {
            do {  // a character further
                ++start;
            } while (start < text.size() && (static_cast<unsigned char>(text[start]) >> 6U) == 2U);
        }
        if (first == last && first == lastEnd) {
            continue;
        }
        result += text.substr(copied, first - copied) +
                  filledIn(std::get<std::string>(arguments[2]), groups);
        copied = lastEnd = last;
        if (!isEvery) {
            break;
        }
    }
    return result + text.substr(copied);
}

// --- conversions --------------------------------------------------------------------------------

double numberIn(const std::string& text, const char* pattern) {
    const double number = std::strtod(text.c_str(), nullptr);
    const bool hasDigits = text.find_first_of("0123456789") != std::string::npos;
    if (!compiled(pattern).matches(text) || (hasDigits && std::isinf(number))) {
        throw NaiveFailure{"\"" + text + "\" is not a number"};
    }
    return number;
}

double toReal(const NaiveValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return numberIn(
            *text, "^[+-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+-]?[0-9]+)?$|^[+-]?inf$|^[+-]?nan$");
    }
    const auto* boolean = std::get_if<bool>(&value);
    const auto* integer = std::get_if<int>(&value);
    return boolean != nullptr ? *boolean : integer != nullptr ? *integer : std::get<double>(value);
}

int toInteger(const NaiveValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return inRange(text != nullptr ? numberIn(*text, "^[+-]?[0-9]+$") : std::trunc(toReal(value)));
}

bool toBoolean(const NaiveValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && *text != "true" && *text != "false") {
        throw NaiveFailure{"\"" + *text + "\" is not a boolean"};
    }
    return text != nullptr ? *text == "true" : toReal(value) != 0;
}

template <class Number>
std::string digits(Number number) {
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

// --- texts --------------------------------------------------------------------------------------

std::string shifted(std::string text, char first, char last, int distance) {
    for (char& character : text) {
        if (character >= first && character <= last) {
            character = static_cast<char>(character + distance);
        }
    }
    return text;
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
    const std::size_t last = text.find_last_not_of(" \t\n\v\f\r");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::string escaped(const std::string& text) {
    static const std::map<char, std::string> escapes = {
        {'\t', "\\t"}, {'\n', "\\r\\n"}, {'"', "\\\""}, {'\\', "\\\\"}};
    std::string result;
    for (const char character : text.substr(0, text.find('\0'))) {
        const auto escape = escapes.find(character);
        result += escape != escapes.end() ? escape->second : std::string(1, character);
    }
    return result;
}

std::string joined(const std::vector<std::string>& texts, const std::string& delimiter) {
    std::string result;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        result += (i > 0 ? delimiter : "") + texts[i];
    }
    return result;
}

// --- objects ------------------------------------------------------------------------------------

const Thing* first(const NaiveObjects& objects) {
    return objects.elements.empty() ? (objects.all(), nullptr) : objects.elements[0];
}

const Thing* only(const NaiveObjects& objects) {
    return objects.all().size() <= 1 ? first(objects) : throw NaiveFailure{"more than one object"};
}

NaiveObjects unique(const NaiveObjects& objects) {
    NaiveObjects result{{}, objects.failure};
    std::set<const Thing*> seen;
    for (const Thing* object : objects.elements) {
        if (seen.insert(object).second) {
            result.elements.push_back(object);
        }
    }
    return result;
}

std::string signature(const Thing* object) {
    const std::string kind = object != nullptr ? object->kind : "";
    if (kind != "Operation") {
        return "<<object is not an Operation; actual class of object is " + kind + ">>";
    }
    const auto typeOf = [](const Thing* owner, const char* otherwise) {
        const std::string type = naive::attribute(owner, "type");
        return " : " + (type.empty() ? otherwise : type);
    };
    std::vector<std::string> parameters;
    for (const Thing* parameter : naive::targets(object, "parameter")) {
        parameters.push_back(naive::attribute(parameter, "name") +
                             typeOf(parameter, "<<unspecified>>"));
    }
    return naive::attribute(object, "name") + "(" + joined(parameters, ", ") + ")" +
           typeOf(object, "void");
}

// --- operators ----------------------------------------------------------------------------------

std::partial_ordering orderOfSets(const NaiveObjects& lhs, const NaiveObjects& rhs) {
    const std::set<const Thing*> left(lhs.all().begin(), lhs.all().end());
    const std::set<const Thing*> right(rhs.all().begin(), rhs.all().end());
    const auto includes = [](const auto& outer, const auto& inner) {
        return std::includes(outer.begin(), outer.end(), inner.begin(), inner.end());
    };
    return left == right           ? std::partial_ordering::equivalent
           : includes(right, left) ? std::partial_ordering::less
           : includes(left, right) ? std::partial_ordering::greater
                                   : std::partial_ordering::unordered;
}

std::partial_ordering order(const NaiveValue& lhs, const NaiveValue& rhs) {
    const auto compare = [&rhs](const auto& left) -> std::partial_ordering {
        using Type = std::decay_t<decltype(left)>;
        if constexpr (std::is_same_v<Type, NaiveObjects>) {
            return orderOfSets(left, std::get<NaiveObjects>(rhs));
        } else if constexpr (std::is_same_v<Type, NaiveTexts>) {
            throw std::bad_variant_access();
        } else {
            return left <=> std::get<Type>(rhs);
        }
    };
    return std::visit(compare, lhs);
}

/// For reals, and for integers in 64 bits, where nothing overflows.
template <class Number>
Number calculate(BinaryOperator op, Number lhs, Number rhs) {
    switch (op) {
        case BinaryOperator::ADD:
            return lhs + rhs;
        case BinaryOperator::SUBTRACT:
            return lhs - rhs;
        case BinaryOperator::MULTIPLY:
            return lhs * rhs;
        default:
            return lhs / rhs;
    }
}

}  // namespace

std::string naive::textOf(const NaiveValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) {
        return *boolean ? "true" : "false";
    }
    if (const auto* integer = std::get_if<int>(&value)) {
        return digits(*integer);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return !std::isnan(*real)    ? digits(*real)
               : isTextOfNaNCompared ? "nan"
                                     : throw NaiveRefusal();
    }
    return std::get<std::string>(value);
}

NaiveValue naive::arithmetic(BinaryOperator op, const NaiveValue& lhs, const NaiveValue& rhs) {
    if (const auto* text = std::get_if<std::string>(&lhs)) {
        return *text + std::get<std::string>(rhs);
    }
    if (const auto* real = std::get_if<double>(&lhs)) {
        return calculate(op, *real, std::get<double>(rhs));
    }
    if (op == BinaryOperator::DIVIDE && std::get<int>(rhs) == 0) {
        throw NaiveFailure{"division by zero"};
    }
    return inRange(
        static_cast<double>(calculate<std::int64_t>(op, std::get<int>(lhs), std::get<int>(rhs))));
}

NaiveValue naive::negated(const NaiveValue& value) {
    const auto* integer = std::get_if<int>(&value);
    return integer != nullptr ? NaiveValue(inRange(-static_cast<double>(*integer)))
                              : NaiveValue(-std::get<double>(value));
}

bool naive::holds(RelationalOperator op, const NaiveValue& lhs, const NaiveValue& rhs) {
    switch (op) {
        case RelationalOperator::EQUAL:
            return order(lhs, rhs) == 0;
        case RelationalOperator::NOT_EQUAL:
            return order(lhs, rhs) != 0;
        case RelationalOperator::LESS:
            return order(lhs, rhs) < 0;
        case RelationalOperator::LESS_EQUAL:
            return order(lhs, rhs) <= 0;
        case RelationalOperator::GREATER:
            return order(lhs, rhs) > 0;
        case RelationalOperator::GREATER_EQUAL:
            return order(lhs, rhs) >= 0;
        default:
            return compiled(std::get<std::string>(rhs)).matches(std::get<std::string>(lhs)) ==
                   (op == RelationalOperator::REGEXP_EQUAL);
    }
}

bool naive::isKeyBefore(const NaiveValue& left, const NaiveValue& right) {
    const auto isNaN = [](const NaiveValue& value) {
        const auto* real = std::get_if<double>(&value);
        return real != nullptr && std::isnan(*real);
    };
    return isNaN(right) ? !isNaN(left) : order(left, right) < 0;
}

NaiveValue naive::apply(const std::string& function, const NaiveArguments& arguments) {
    using Value = NaiveValue;
    using A = const NaiveArguments&;
    static const auto text = [](A a) -> const auto& { return std::get<std::string>(a[0]); };
    static const auto object = [](A a) { return std::get<const Thing*>(a[0]); };
    static const auto objects = [](A a) -> const auto& { return std::get<NaiveObjects>(a[0]); };
    static const auto texts = [](const Value& v) { return std::get<NaiveTexts>(v).all(); };
    static const std::map<std::string, Value (*)(A)> functions = {
        {"size", [](A a) { return Value(static_cast<int>(objects(a).all().size())); }},
        {"class", [](A a) { return Value(object(a) != nullptr ? object(a)->kind : ""); }},
        {"uid", [](A a) { return Value(object(a) != nullptr ? object(a)->id : ""); }},
        {"attribute", [](A a) { return Value(attribute(std::get<const Thing*>(a[1]), text(a))); }},
        {"comma", [](A a) { return Value(joined(texts(a[0]), ", ")); }},
        {"delim", [](A a) { return Value(joined(texts(a[1]), text(a))); }},
        {"concat", [](A a) { return Value(joined(texts(a[0]), "")); }},
        {"opSig", [](A a) { return Value(signature(object(a))); }},
        {"match",
         [](A a) { return Value(compiled(text(a)).matches(std::get<std::string>(a[1]))); }},
        {"find", [](A a) { return Value(found(text(a), std::get<std::string>(a[1]))); }},
        {"replace", [](A a) { return Value(replaced(a, false)); }},
        {"replace_all", [](A a) { return Value(replaced(a, true)); }},
        {"tolower", [](A a) { return Value(shifted(text(a), 'A', 'Z', 'a' - 'A')); }},
        {"toupper", [](A a) { return Value(shifted(text(a), 'a', 'z', 'A' - 'a')); }},
        {"trim", [](A a) { return Value(trimmed(text(a))); }},
        {"escape", [](A a) { return Value(escaped(text(a))); }},
        {"unique", [](A a) { return Value(unique(objects(a))); }},
        {"unique_stable", [](A a) { return Value(unique(objects(a))); }},
        {"reverse",
         [](A a) {
             const auto& all = objects(a).all();
             return Value(NaiveObjects{{all.rbegin(), all.rend()}, {}});
         }},
        {"first", [](A a) { return Value(first(objects(a))); }},
        {"only", [](A a) { return Value(only(objects(a))); }},
        {"object", [](A a) { return Value(only(objects(a))); }},
        {"string", [](A a) { return Value(textOf(a[0])); }},
        {"integer", [](A a) { return Value(toInteger(a[0])); }},
        {"real", [](A a) { return Value(toReal(a[0])); }},
        {"boolean", [](A a) { return Value(toBoolean(a[0])); }},
    };
    return functions.at(function)(arguments);
}

std::string naive::attribute(const Thing* object, const std::string& name) {
    return object != nullptr && object->attributes.count(name) > 0 ? object->attributes.at(name)
                                                                   : "";
}

std::vector<const Thing*> naive::targets(const Thing* object, const std::string& association) {
    std::vector<const Thing*> result;
    if (object != nullptr && object->associations.count(association) > 0) {
        for (const MMObject target : object->associations.at(association)) {
            result.push_back(reinterpret_cast<const Thing*>(target));
        }
    }
    return result;
}
