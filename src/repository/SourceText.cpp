#include "repository/SourceText.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "repository/TextEncoding.h"

namespace {

// Places are 32 bits, and two values of them mean something else.
constexpr std::size_t largestSize = 0xFFFFFF00U;
constexpr const char* tooLarge = "The file is larger than 4 GiB.";

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

// The system's sentence. Short memory is no error of the file; without any reason it is that, too,
// since a host's own malloc may fail without giving one.
std::string describe(int error) {
    if (error == ENOMEM || error == 0) {
        throw std::bad_alloc();
    }
    return std::generic_category().message(error);
}

// Has the system use large pages for a large buffer, where it has them: getting as many small ones
// takes longer than reading what they are to hold. A smaller buffer may be a part of the heap, on
// which the advice would stay when it is freed.
void askForLargePages([[maybe_unused]] char* buffer, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t page = std::uintptr_t{2} << 20U;
    constexpr std::size_t largestOfHeap = std::size_t{32} << 20U;  // malloc's largest threshold
    if (size > largestOfHeap) {
        const auto begin = reinterpret_cast<std::uintptr_t>(buffer);
        const std::uintptr_t first = (begin + page - 1) / page * page;
        const std::uintptr_t last = (begin + size) / page * page;
        const int error = errno;
        madvise(buffer + (first - begin), last - first, MADV_HUGEPAGE);  // is advice, and may fail
        errno = error;
    }
#endif
}

// What to expect of a file; a pipe tells nothing and is read to its end all the same.
std::size_t expectedSize(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return error ? 0 : static_cast<std::size_t>(std::min<std::uintmax_t>(size, largestSize + 1));
}

}  // namespace

SourceText SourceText::readFile(const std::string& path) {
    SourceText text(path);
    text.fill(path);
    text.decode();
    return text;
}

SourceText SourceText::copyOf(std::string_view text, const std::string& name) {
    SourceText copy(name);
    if (text.size() > largestSize) {
        copy.fail(tooLarge);
    }
    copy.grow(text.size());
    std::memcpy(copy.text_, text.data(), text.size());
    copy.size_ = text.size();
    copy.decode();
    return copy;
}

void SourceText::fill(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        fail("It is a directory, not a file.");
    }
    if (std::filesystem::is_character_file(path, error)) {
        fail("It is a device, not a file.");  // which may have no end
    }
    errno = 0;
    const OpenFile file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) {
        const int reason = errno;
        fail(reason == ENOENT ? "There is no such file."
                              : "Cannot read it: " + describe(reason) + '.');
    }
    std::size_t capacity = expectedSize(path) + 1;  // one more, to meet the end at once
    if (capacity > largestSize) {
        fail(tooLarge);
    }
    grow(capacity);
    for (;;) {
        const std::size_t count = std::fread(text_ + size_, 1, capacity - size_, file.get());
        size_ += count;
        if (size_ > largestSize) {
            fail(tooLarge);
        }
        if (size_ < capacity) {
            break;
        }
        capacity = std::max<std::size_t>(capacity * 2, 65536);
        grow(capacity);
    }
    if (std::ferror(file.get()) != 0) {
        fail("Cannot read it: " + describe(errno) + '.');
    }
}

// Makes room for so many bytes and the slack, and keeps what is there.
void SourceText::grow(std::size_t capacity) {
    auto larger = std::make_unique_for_overwrite<char[]>(capacity + slack);
    askForLargePages(larger.get(), capacity);
    if (size_ != 0) {
        std::memcpy(larger.get(), text_, size_);
    }
    buffer_ = std::move(larger);
    text_ = buffer_.get();
}

// Turns what was read into UTF-8 in place, or into a text of its own where the encoding is another.
void SourceText::decode() {
    if (size_ == 0) {
        fail(0, "The file is empty.");
    }
    std::memset(text_ + size_, 0, slack);
    const TextEncoding encoding = TextEncoding::detect(view());
    text_ += encoding.markLength;
    size_ -= encoding.markLength;
    if (!encoding.isUtf8() && !encoding.isAscii()) {
        convert(encoding.name);
    }
    const std::size_t bad = encoding.isAscii() ? findNonAscii(view()) : findInvalidUtf8(view());
    if (bad != size_) {
        addLines();
        fail(bad,
             "This byte is not " + std::string(encoding.isAscii() ? "US-ASCII" : "UTF-8") + '.');
    }
}

void SourceText::convert(const std::string& encoding) {
    const bool wasDeclared = view().substr(0, 5) == "<?xml";
    ConvertedText converted = convertToUtf8(view(), encoding);
    if (converted.buffer == nullptr) {
        addLines();
        fail(wasDeclared ? view().find(encoding) : 0,
             "The encoding \"" + encoding + "\" is not known.");
    }
    size_ = 0;
    grow(converted.size);
    size_ = converted.size;
    std::memcpy(text_, converted.buffer.get(), size_);
    std::memset(text_ + size_, 0, slack);
    if (!converted.isComplete) {
        addLines();
        fail(size_, "The next character is not of the encoding \"" + encoding + "\".");
    }
    if (size_ > largestSize) {
        fail(tooLarge);
    }
    if (wasDeclared && view().substr(0, 5) != "<?xml") {
        fail(0, "It is not written in the encoding \"" + encoding + "\" that it declares.");
    }
}

void SourceText::addLines() {
    const char* const end = text_ + size_;
    const char* line = text_;
    while (const void* const found =
               std::memchr(line, '\n', static_cast<std::size_t>(end - line))) {
        line = static_cast<const char*>(found) + 1;
        addLine(static_cast<std::size_t>(line - text_));
    }
}

TextPlace SourceText::place(std::size_t offset) const {
    const auto after = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    const auto line = static_cast<std::size_t>(after - lineStarts_.begin());
    return {static_cast<std::uint32_t>(line),
            static_cast<std::uint32_t>(offset - lineStarts_[line - 1] + 1)};
}

void SourceText::fail(std::size_t offset, const std::string& sentence) const {
    throwLogged(ModelError(name_, place(offset), sentence));
}

void SourceText::fail(const std::string& sentence) const {
    throwLogged(ModelError(name_, TextPlace(), sentence));
}
