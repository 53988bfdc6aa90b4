// A text that is open in an editor, and positions in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mmq {

/// What the characters of a line are counted in (LSP 3.17, "PositionEncodingKind").
enum class PositionEncoding { utf8, utf16 };

/// A place between two characters, both numbers from zero.
struct Position {
    std::uint32_t line = 0;
    std::uint32_t character = 0;
};

struct PositionRange {
    Position start;
    Position end;
};

/// The text of a document, with its lines: they end with LF, CR LF or CR. The text is UTF-8.
/// Belongs to the workspace.
class Document {
public:
    Document(std::string text, PositionEncoding encoding);

    const std::string& text() const { return text_; }

    /// The byte at a position. A character behind the end of its line is that end; a line behind
    /// the last one, or a place within a character, is what comes before.
    std::size_t offset(const Position& position) const;
    /// The position of a byte.
    Position position(std::size_t offset) const;

    /// Puts a text in the place of a range; of all, where there is none.
    void change(const std::optional<PositionRange>& range, const std::string& text);

private:
    void findLines();
    std::size_t endOfLine(std::size_t line) const;
    std::uint32_t unitsAt(std::size_t offset) const;

    std::string text_;
    PositionEncoding encoding_;
    std::vector<std::size_t> lineStarts_;
};

}  // namespace mmq
