// Hashes of texts and numbers that the author of a document cannot know.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// A hash function with a secret of its own, good in all of its 64 bits.
///
/// Who writes a document chooses its ids and names, and could choose such that all have one hash,
/// if that were known: then each look-up in a table would search through all of them. So each
/// table has a function of its own, by two random words that enter both factors of every
/// multiplication. Nothing that anyone sees may depend on hashes or on the places that they give.
/// Being made neither allocates nor fails. Copies hash alike; any number of threads may use one.
class KeyedHash {
public:
    KeyedHash();

    std::uint64_t operator()(std::string_view text) const {
        const char* const end = text.data() + text.size();
        std::uint64_t hash = text.size();
        std::uint64_t low = 0;
        std::uint64_t high = 0;
        if (text.size() >= 8) {
            for (const char* p = text.data(); end - p > 16; p += 16) {
                hash = mix(load(p) ^ first_, load(p + 8) ^ hash ^ second_);
            }
            // The last two words overlap each other, or what was mixed before.
            low = load(text.size() >= 16 ? end - 16 : text.data());
            high = load(end - 8);
        } else {
            for (const char c : text) {
                low = low << 8U | static_cast<unsigned char>(c);
            }
        }
        return (*this)(low, high ^ hash);
    }

    std::uint64_t operator()(std::uint64_t one, std::uint64_t other) const {
        return mix(mix(one ^ first_, other ^ second_) ^ second_, first_);
    }

private:
    static std::uint64_t load(const char* p) {
        std::uint64_t word = 0;
        std::memcpy(&word, p, sizeof word);
        return word;
    }
    // Folds the product of two words.
    static std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
        __extension__ typedef unsigned __int128 Product;  // NOLINT: no other name for the type
        const Product product = static_cast<Product>(a) * b;
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64U);
    }

    std::uint64_t first_ = 0;
    std::uint64_t second_ = 0;
};
