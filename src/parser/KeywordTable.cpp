#include "parser/KeywordTable.h"

#include <algorithm>
#include <array>

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

}  // namespace

KeywordTable::KeywordTable() : entries_(keywords.begin(), keywords.end()) {
    std::sort(entries_.begin(), entries_.end(),
              [](const Entry& left, const Entry& right) { return left.word < right.word; });
    firstOf_.fill(static_cast<std::uint8_t>(entries_.size()));
    for (std::size_t i = entries_.size(); i > 0; --i) {
        firstOf_[static_cast<unsigned char>(entries_[i - 1].word.front())] =
            static_cast<std::uint8_t>(i - 1);
    }
}

const OrvCountedPtr<KeywordTable>& KeywordTable::instance() {
    static const OrvCountedPtr<KeywordTable> table =
        OrvPinnedRegistry::instance().pin(OrvCountedPtr<KeywordTable>(new KeywordTable));
    return table;
}

int KeywordTable::lookup(std::string_view word) const {
    const unsigned char begin = word.empty() ? 0 : static_cast<unsigned char>(word.front());
    for (std::size_t i = firstOf_[begin];
         i < entries_.size() && entries_[i].word.front() == word.front(); ++i) {
        if (entries_[i].word == word) {
            return entries_[i].tokenNumber;
        }
    }
    return TOKEN_VARIABLE_OR_FUNCTION;
}
