// Numbers for texts: each text once, in the order in which they came.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

/// A hash of a text, good in all of its 64 bits.
inline std::uint64_t hashText(std::string_view text) {
    __extension__ typedef unsigned __int128 Product;  // NOLINT: no other name for the type
    const auto load = [](const char* p) {
        std::uint64_t word = 0;
        std::memcpy(&word, p, sizeof word);
        return word;
    };
    const auto mix = [](std::uint64_t a, std::uint64_t b) {
        const Product product = static_cast<Product>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    };
    constexpr std::uint64_t first = 0x9E3779B97F4A7C15U;
    constexpr std::uint64_t second = 0xBF58476D1CE4E5B9U;
    const char* const end = text.data() + text.size();
    std::uint64_t hash = text.size() ^ first;
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    if (text.size() >= 8) {
        for (const char* p = text.data(); end - p > 16; p += 16) {
            hash = mix(load(p) ^ second, load(p + 8) ^ hash);
        }
        // The last two words overlap each other, or what was mixed before.
        low = load(text.size() >= 16 ? end - 16 : text.data());
        high = load(end - 8);
    } else {
        for (const char c : text) {
            low = low << 8U | static_cast<unsigned char>(c);
        }
    }
    return mix(mix(low ^ second, high ^ hash), first);
}

/// The name with a capital first letter.
std::string capitalized(std::string_view name);

/// The names of one kind that a model has, numbered from 0 in the order of their first use.
///
/// Holds views only: the texts must live as long as the table. Constant operations may be called
/// from any thread.
class NameTable {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    /// The number of a name, given to it now if it has none.
    std::uint32_t intern(std::string_view name);
    /// The number of a name, or none.
    std::uint32_t find(std::string_view name) const;

    const std::string_view& name(std::uint32_t number) const { return names_[number]; }
    std::size_t size() const { return names_.size(); }

private:
    std::size_t slotOf(std::string_view name) const;
    void grow();

    std::vector<std::string_view> names_;
    std::vector<std::uint32_t> slots_;  // a power of two, at most half of them used
};
