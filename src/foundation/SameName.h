// The comparison of names, most of which are short.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// The first bytes of a name as a number.
template <class Number>
Number bytesAt(const char* text) {
    Number number;
    std::memcpy(&number, text, sizeof(number));
    return number;
}

/// Whether two names are the same. Most that are the same constant are not compared at all. Those
/// of two to sixteen bytes, which nearly all are, are compared by their first and their last bytes,
/// which meet or overlap, without a call.
inline bool isSameName(std::string_view left, std::string_view right) {
    const std::size_t size = left.size();
    if (size != right.size()) {
        return false;
    }
    if (left.data() == right.data()) {
        return true;
    }
    const auto areEqualBy = [&]<class Number>(Number /*of that many bytes*/) {
        const std::size_t last = size - sizeof(Number);
        return bytesAt<Number>(left.data()) == bytesAt<Number>(right.data()) &&
               bytesAt<Number>(left.data() + last) == bytesAt<Number>(right.data() + last);
    };
    if (size >= sizeof(std::uint64_t) && size <= 2 * sizeof(std::uint64_t)) {
        return areEqualBy(std::uint64_t());
    }
    if (size >= sizeof(std::uint32_t) && size < sizeof(std::uint64_t)) {
        return areEqualBy(std::uint32_t());
    }
    if (size >= sizeof(std::uint16_t) && size < sizeof(std::uint32_t)) {
        return areEqualBy(std::uint16_t());
    }
    return left == right;
}
