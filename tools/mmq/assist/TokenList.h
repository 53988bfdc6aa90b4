// The tokens of a text that may not be whole yet.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mmq {

/// A token, where it stands in its text.
struct PlacedToken {
    int number;
    std::string text;  ///< without quotes, with escapes replaced
    std::size_t offset;
    std::size_t endOffset;
    std::pair<int, int> place;  ///< line and column, as messages give them
};

/// What is begun and not ended at the end of a text.
enum class OpenQuote { none, comment, string, association, pattern };

/// The tokens of a text, up to its end or to what is no token. Characters that begin none are
/// passed over. A plain value.
class TokenList {
public:
    explicit TokenList(const std::string& text);

    /// All tokens but the end of the text.
    const std::vector<PlacedToken>& tokens() const { return tokens_; }
    /// Whether the whole text consists of tokens; else what stands open at its end, and where that
    /// begins. A quote that may not be closed behind the end of its line is not open.
    bool isWhole() const { return isWhole_; }
    OpenQuote open() const { return open_; }
    std::size_t openOffset() const { return openOffset_; }
    /// The place of the end of the text, where isWhole().
    const std::pair<int, int>& endPlace() const { return endPlace_; }

    /// The token that begins at a place or that holds a byte; the end of a token counts as its own
    /// where no other begins there. Null where there is none.
    const PlacedToken* findPlace(const std::pair<int, int>& place) const;
    const PlacedToken* findAt(std::size_t offset) const;
    /// The token behind another one, or null.
    const PlacedToken* next(const PlacedToken& token) const;

private:
    std::vector<PlacedToken> tokens_;
    bool isWhole_ = false;
    OpenQuote open_ = OpenQuote::none;
    std::size_t openOffset_ = 0;
    std::pair<int, int> endPlace_;
};

}  // namespace mmq
