// Attributes and associations of many objects at once, for hosts that keep them side by side.
#pragma once

#include <cstdint>
#include <string_view>

#include "fliodram/MMModel.h"

/// The place of a text behind the base of a column, or that it has none there.
struct MMTextPlace {
    /// From this length on there is no text at that place: the model is to be asked.
    static constexpr std::uint32_t elsewhere = 0xFFFFFFFEU;

    std::uint32_t offset = 0;
    std::uint32_t length = elsewhere;
};

/// The values of one attribute, or the names of the classes, of `count` objects whose handles
/// follow each other.
///
/// Either a short list of texts and a code for each object, the number of its text in the list (0,
/// where there are no codes); or the place of each text. What read() does not know, the model is
/// asked for; a column without texts and places says that it is to be asked for each of these
/// objects.
struct MMTextColumn {
    MMObject first = mmNoObject;
    std::uint64_t count = 0;
    const std::string_view* texts = nullptr;  // by code; one without data is not known
    const std::uint8_t* codes = nullptr;
    const MMTextPlace* places = nullptr;
    const char* base = nullptr;

    bool covers(MMObject object) const { return object - first < count; }

    /// The value of an object, if the column knows it.
    bool read(MMObject object, std::string_view& text) const {
        const std::uint64_t index = object - first;
        if (index >= count) {
            return false;
        }
        if (texts != nullptr) {
            text = texts[codes != nullptr ? codes[index] : 0];
            return text.data() != nullptr;
        }
        if (places == nullptr || places[index].length >= MMTextPlace::elsewhere) {
            return false;
        }
        text = {base + places[index].offset, places[index].length};
        return true;
    }

    /// Has the value of an object brought into the cache, where it stands in a place of its own.
    void prefetch(MMObject object) const {
        const std::uint64_t index = object - first;
        if (places != nullptr && index < count) {
            __builtin_prefetch(base + places[index].offset);
        }
    }
};

/// The targets of one association for `count` objects whose handles follow each other: those of the
/// object number i are the range from offsets[i] up to but not including offsets[i + 1].
///
/// What read() does not know, MMModel::targets() tells; a column without offsets says that it is to
/// be asked for each of these objects.
struct MMTargetColumn {
    MMObject first = mmNoObject;
    std::uint64_t count = 0;
    const std::uint32_t* offsets = nullptr;  // one more than there are objects
    const MMObject* targets = nullptr;
    bool isDistinct = false;   // of each range, as MMObjectRange has it
    bool isExclusive = false;  // of each range, as MMObjectRange has it
    bool isComplete = false;   // an object with an empty range has no targets; else it is not known

    bool covers(MMObject object) const { return object - first < count; }

    /// The targets of an object, if the column knows them.
    bool read(MMObject object, MMObjectRange& range) const {
        const std::uint64_t index = object - first;
        if (index >= count || offsets == nullptr) {
            return false;
        }
        range = {targets + offsets[index], targets + offsets[index + 1], isDistinct, isExclusive};
        return isComplete || range.first != range.last;
    }

    /// Has the first targets of an object brought into the cache.
    void prefetch(MMObject object) const {
        const std::uint64_t index = object - first;
        if (offsets != nullptr && index < count) {
            __builtin_prefetch(targets + offsets[index]);
        }
    }
};
