// The texts of what a compilation makes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

#include "foundation/OrvMemoryPool.h"
#include "foundation/OrvMemoryRegion.h"

/// A text that an object keeps, followed by a NUL and never changed: a copy in the region in which
/// its object stands, which goes with that, a constant, or a copy of its own.
///
/// So an object of a region owns no memory elsewhere. Moved with the object, not copied.
class OrvRegionText {
public:
    OrvRegionText() noexcept = default;
    /// A copy of its own; throws std::bad_alloc.
    template <class Text,
              class = std::enable_if_t<std::is_convertible_v<const Text&, std::string_view>>>
    // NOLINTNEXTLINE(google-explicit-constructor): objects are made with texts of any kind
    OrvRegionText(const Text& text) : OrvRegionText(nullptr, text) {}
    /// A copy in a region, or of its own where there is none; throws std::bad_alloc.
    OrvRegionText(OrvMemoryRegion* region, std::string_view text)
        : measure_(2 * text.size() + (region == nullptr ? 1 : 0)) {
        auto* const bytes =
            static_cast<char*>(region != nullptr ? region->allocateBytes(text.size() + 1)
                                                 : OrvMemoryPool::allocate(text.size() + 1));
        copy(text, bytes);
        bytes[text.size()] = '\0';
        bytes_ = bytes;
    }
    /// A constant, which is not copied.
    static OrvRegionText constant(std::string_view text) noexcept {
        OrvRegionText result;
        result.bytes_ = text.data();
        result.measure_ = 2 * text.size();
        return result;
    }

    OrvRegionText(OrvRegionText&& other) noexcept
        : bytes_(std::exchange(other.bytes_, "")), measure_(std::exchange(other.measure_, 0)) {}
    OrvRegionText& operator=(OrvRegionText&& other) noexcept {
        std::swap(bytes_, other.bytes_);
        std::swap(measure_, other.measure_);
        return *this;
    }
    ~OrvRegionText() {
        if (measure_ % 2 != 0) {
            OrvMemoryPool::deallocate(const_cast<char*>(bytes_), size() + 1);
        }
    }

    std::string_view view() const { return {bytes_, size()}; }

private:
    std::size_t size() const { return measure_ / 2; }

    // Most texts have four to sixteen bytes: these are copied as their first and their last ones,
    // which meet or overlap, without a call.
    static void copy(std::string_view text, char* bytes) {
        const auto copyEnds = [&](auto number) {
            const std::size_t last = text.size() - sizeof(number);
            std::memcpy(&number, text.data() + last, sizeof(number));
            std::memcpy(bytes, text.data(), sizeof(number));
            std::memcpy(bytes + last, &number, sizeof(number));
        };
        if (text.size() >= sizeof(std::uint64_t) && text.size() <= 2 * sizeof(std::uint64_t)) {
            copyEnds(std::uint64_t{});
        } else if (text.size() >= sizeof(std::uint32_t) && text.size() < sizeof(std::uint64_t)) {
            copyEnds(std::uint32_t{});
        } else if (!text.empty()) {
            std::memcpy(bytes, text.data(), text.size());
        }
    }

    const char* bytes_ = "";
    std::size_t measure_ = 0;  // twice the size, and one more for a copy of its own
};
