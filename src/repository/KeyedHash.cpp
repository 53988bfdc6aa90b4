#include "repository/KeyedHash.h"

#include <sys/random.h>

#include <array>
#include <chrono>

KeyedHash::KeyedHash() {
    std::array<std::uint64_t, 2> words{};
    if (getrandom(words.data(), sizeof words, GRND_NONBLOCK) != sizeof words) {
        // A system that has no random bytes yet still has the time, and places that it chose.
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        words[0] = mix(static_cast<std::uint64_t>(now), 0x9E3779B97F4A7C15U);
        words[1] = mix(reinterpret_cast<std::uintptr_t>(this) ^ words[0], 0xBF58476D1CE4E5B9U);
    }
    first_ = words[0] | 1U;  // never zero, which would make one hash of all
    second_ = words[1];
}
