// When a column has a place for every object.
#pragma once

#include <cstddef>

/// True where so many places of a size, one an object, are worth spending on so many entries.
/// Columns then find an entry by the object's number; otherwise they list the numbers of those that
/// have one. 64 bytes an entry keep the memory of all columns within a multiple of what the
/// document has.
inline bool isWorthwhile(std::size_t places, std::size_t placeSize, std::size_t entries) {
    constexpr std::size_t bytesForEntry = 64;
    return places * placeSize <= bytesForEntry * (entries + 1);
}
