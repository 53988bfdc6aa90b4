// Numbers for texts: each text once, in the order in which they came.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "repository/KeyedHash.h"

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

    KeyedHash hash_;
    std::vector<std::string_view> names_;
    std::vector<std::uint32_t> slots_;  // a power of two, at most half of them used
};
