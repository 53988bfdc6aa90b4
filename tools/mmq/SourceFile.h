// A file that holds the texts of expressions, and where in it they stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "repository/ModelError.h"

namespace mmq {

/// The line of a text around a byte and, below it, a caret under the character there: two lines,
/// each with a line end. Of a very long line, what stands around the place.
std::string excerptAt(std::string_view text, std::size_t offset);

/// A line of a text, and what marks a piece of it from below: "~" under its bytes on that line, "^"
/// under the point. Of a very long line, what stands around the point. Both without a line end.
struct MarkedLine {
    std::string line;
    std::string marks;
};

/// Marks the bytes from `first` up to `last` on the line of `point`; with none of them there, the
/// point alone.
MarkedLine markAt(std::string_view text, std::size_t point, std::size_t first, std::size_t last);

/// The end of the line around a byte, without the white space there; the byte itself where nothing
/// else is behind it. Of a very long line, some place in it.
std::size_t endOfLine(std::string_view text, std::size_t offset);

/// The text of a file, under the name that messages show. Shared by all that was read from it;
/// never changes.
class SourceFile {
public:
    /// The text begins behind a byte order mark, if it has one.
    SourceFile(std::string name, std::string text);

    const std::string& name() const { return name_; }
    const std::string& text() const { return text_; }

    TextPlace place(std::size_t offset) const;
    /// The offset of a place; of the end of the text where it has no such place.
    std::size_t offset(TextPlace place) const;
    std::string excerpt(std::size_t offset) const { return excerptAt(text_, offset); }

private:
    std::string name_;
    std::string text_;
    std::vector<std::size_t> lineStarts_;
};

/// Where in a file the bytes of a text stand that was written there, perhaps with escapes and
/// indented lines. Without a file it is the origin of a text that stands by itself.
struct TextOrigin {
    std::shared_ptr<const SourceFile> file;
    std::vector<std::size_t> offsets;  ///< of each byte, and of the end

    /// The origin of a piece of the text.
    TextOrigin part(std::size_t first, std::size_t length) const;
};

}  // namespace mmq
