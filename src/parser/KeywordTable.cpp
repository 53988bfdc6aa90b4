#include "parser/KeywordTable.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/OrvPinnedRegistry.h"
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

constexpr bool haveHashesOfTheirOwn() {
    std::array<bool, 128> taken{};
    for (const KeywordTable::Entry& keyword : keywords) {
        if (std::exchange(taken[hashOf(keyword.word)], true)) {
            return false;
        }
    }
    return true;
}

static_assert(haveHashesOfTheirOwn(), "Two keywords have the same hash: choose other factors.");

}  // namespace

KeywordTable::KeywordTable() : entries_(keywords.begin(), keywords.end()) {
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& left, const Entry& right) { return left.word < right.word; });
    for (const Entry& entry : entries_) {
        entryOf_[hashOf(entry.word)] = &entry;
    }
}

const OrvCountedPtr<KeywordTable>& KeywordTable::instance() {
    static const OrvCountedPtr<KeywordTable> table =
        OrvPinnedRegistry::instance().pin(OrvCountedPtr<KeywordTable>(new KeywordTable));
    return table;
}

int KeywordTable::lookup(std::string_view word) const {
    const Entry* const entry = word.empty() ? nullptr : entryOf_[hashOf(word)];
    const bool isKeyword = entry != nullptr && entry->word == word;
    return isKeyword ? entry->tokenNumber : TOKEN_VARIABLE_OR_FUNCTION;
}
