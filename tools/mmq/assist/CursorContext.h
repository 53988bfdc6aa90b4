// What is begun at a place of a text, as its tokens tell.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "assist/TokenList.h"

namespace mmq {

/// What is begun: a word of the language or a name in scope, the name of something of the model, or
/// nothing that is known already.
enum class Begun { nothing, word, attribute, label, association, className };

/// The tokens before a place, and what is begun there. A plain value.
class CursorContext {
public:
    CursorContext(const std::string& text, std::size_t cursor);

    Begun begun() const { return begun_; }
    /// Where what is begun begins; the cursor where nothing of it is written yet.
    std::size_t offset() const { return offset_; }
    /// What is written of it.
    const std::string& written() const { return written_; }
    /// The tokens before that.
    const std::vector<PlacedToken>& tokens() const { return tokens_; }

private:
    void takeWord(const std::string& before);
    Begun begunWord() const;
    Begun begunQuote(OpenQuote open) const;
    bool isClassNameNext() const;
    int lastToken() const;

    std::vector<PlacedToken> tokens_;
    Begun begun_ = Begun::nothing;
    std::size_t offset_;
    std::string written_;
};

/// Whether a text is a name as expressions write it without quotes.
bool isName(const std::string& text);
/// Whether a byte may stand in such a name.
bool isNameByte(char byte);

}  // namespace mmq
