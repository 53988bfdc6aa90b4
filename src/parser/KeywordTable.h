// The words of the language that are no identifiers.
#pragma once

#include <string_view>
#include <vector>

#include "foundation/OrvCountedPtr.h"

/// The keywords, in a vector sorted by word. One table is shared by the whole process: made on
/// first use, pinned, read by any number of threads.
class KeywordTable {
public:
    KeywordTable();
    KeywordTable(const KeywordTable&) = delete;
    KeywordTable& operator=(const KeywordTable&) = delete;

    static const OrvCountedPtr<KeywordTable>& instance();

    /// The token number of a word: the keyword's, or that of an identifier. Keywords are whole
    /// words in lower case.
    static int lookup(std::string_view word);

    struct Entry {
        std::string_view word;
        int tokenNumber;
    };
    /// All keywords, in byte order.
    const std::vector<Entry>& entries() const { return entries_; }

private:
    std::vector<Entry> entries_;
};
