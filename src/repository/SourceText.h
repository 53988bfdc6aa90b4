// A document in memory, as UTF-8, with its name and a table of its lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "repository/ModelError.h"

/// What was read of a file. The text may be overwritten in place by those who parse it; the lines
/// are those of the text as it was read.
///
/// Owned by whoever holds it, in the end by the model's tables; moving it leaves the text where it
/// is. A text is less than 4 GiB long, so that places in it are 32 bits. Constant operations may
/// be called from any thread.
class SourceText {
public:
    /// Reads the whole of a file, a pipe included. Throws ModelError with a sentence for whatever
    /// is in the way: no such file, a directory, a device, no permission, an empty or too large
    /// file, an unknown encoding, bytes that are not of the encoding.
    static SourceText readFile(const std::string& path);

    /// A copy of a text in memory, called `name` in messages. Throws as readFile() does.
    static SourceText copyOf(std::string_view text, const std::string& name);

    const std::string& name() const { return name_; }
    /// So many bytes behind the text may be read, the first of which is zero.
    static constexpr std::size_t slack = 8;
    /// The text.
    char* data() { return text_; }
    const char* data() const { return text_; }
    std::size_t size() const { return size_; }
    std::string_view view() const { return {text_, size_}; }
    /// A line begins at an offset behind all others. Whoever reads the text from end to end adds
    /// its lines, before he parses it in place.
    void addLine(std::size_t offset) { lineStarts_.push_back(static_cast<std::uint32_t>(offset)); }
    /// Adds all lines, for those that do not.
    void addLines();

    /// The line and column of a byte, as far as the lines are added.
    TextPlace place(std::size_t offset) const;

    /// Throws the ModelError of a sentence about a byte, or about the whole file.
    [[noreturn]] void fail(std::size_t offset, const std::string& sentence) const;
    [[noreturn]] void fail(const std::string& sentence) const;

private:
    explicit SourceText(std::string name) : name_(std::move(name)) {}

    void fill(const std::string& path);
    void grow(std::size_t capacity);
    void decode();
    void convert(const std::string& encoding);

    std::string name_;
    std::unique_ptr<char[]> buffer_;
    char* text_ = nullptr;  // behind a byte order mark
    std::size_t size_ = 0;
    std::vector<std::uint32_t> lineStarts_{0};
};
