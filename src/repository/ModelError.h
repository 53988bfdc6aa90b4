// The exception for a document that cannot be read as a model, with the place that tells why.
#pragma once

#include <cstdint>
#include <string>

#include "support/OrvException.h"

/// A place in a text: line and column, both counted from 1, the column in bytes of UTF-8. Line 0
/// is no place.
struct TextPlace {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// A document that cannot be read. what() is "FILE:LINE:COLUMN: SENTENCE", or "FILE: SENTENCE"
/// where the sentence is about the whole file.
class [[gnu::visibility("default")]] ModelError : public OrvException {
public:
    ModelError(const std::string& file, const TextPlace& place, const std::string& sentence);
    ~ModelError() override;

    const std::string& getFile() const { return file_; }
    const TextPlace& getPlace() const { return place_; }

private:
    std::string file_;
    TextPlace place_;
};
