#include "parser/KeywordTable.h"

#include <algorithm>
#include <array>

#include "foundation/OrvPinnedRegistry.h"
#include "foundation/SameName.h"
#include "parser/TokenNumber.h"

namespace {

constexpr std::array<KeywordTable::Entry, 27> keywords = {{
    {"for_all", TOKEN_FOR_ALL}, {"there_exists", TOKEN_THERE_EXISTS},
    {"let", TOKEN_LET},         {"in", TOKEN_IN},
    {"if", TOKEN_IF},           {"then", TOKEN_THEN},
    {"else", TOKEN_ELSE},       {"map", TOKEN_MAP},
    {"filter", TOKEN_FILTER},   {"traverse", TOKEN_TRAVERSE},
    {"sort", TOKEN_SORT},       {"sortd", TOKEN_SORTD},
    {"over", TOKEN_OVER},       {"implies", TOKEN_IMPLIES},
    {"and", TOKEN_AND},         {"or", TOKEN_OR},
    {"not", TOKEN_NOT},         {"of", TOKEN_OF},
    {"this", TOKEN_THIS},       {"current", TOKEN_CURRENT},
    {"model", TOKEN_MODEL},     {"true", TOKEN_TRUE},
    {"false", TOKEN_FALSE},     {"string", TOKEN_STRING},
    {"integer", TOKEN_INTEGER}, {"real", TOKEN_REAL},
    {"boolean", TOKEN_BOOLEAN},
}};

// Of a word that is not empty.
constexpr std::size_t hashOf(std::string_view word) {
    const auto first = static_cast<unsigned char>(word.front());
    const auto last = static_cast<unsigned char>(word.back());
    return (first + std::size_t{5} * last + word.size()) % 128;
}

/// The keyword of each hash, an empty word for none.
struct HashedKeywords {
    constexpr HashedKeywords() {
        for (const KeywordTable::Entry& keyword : keywords) {
            KeywordTable::Entry& place = entries[hashOf(keyword.word)];
            areApart = areApart && place.word.empty();
            place = keyword;
        }
    }

    std::array<KeywordTable::Entry, 128> entries{};
    bool areApart = true;
};

constexpr HashedKeywords hashedKeywords;

static_assert(hashedKeywords.areApart, "Two keywords have the same hash: choose other factors.");

}  // namespace

KeywordTable::KeywordTable() : entries_(keywords.begin(), keywords.end()) {
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& left, const Entry& right) { return left.word < right.word; });
}

const OrvCountedPtr<KeywordTable>& KeywordTable::instance() {
    static const OrvCountedPtr<KeywordTable> table =
        OrvPinnedRegistry::instance().pin(OrvCountedPtr<KeywordTable>(new KeywordTable));
    return table;
}

int KeywordTable::lookup(std::string_view word) {
    if (word.empty()) {
        return TOKEN_VARIABLE_OR_FUNCTION;
    }
    const Entry& entry = hashedKeywords.entries[hashOf(word)];
    return isSameName(entry.word, word) ? entry.tokenNumber : TOKEN_VARIABLE_OR_FUNCTION;
}
