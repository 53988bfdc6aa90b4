// Texts as eight bytes: a place in what was read, or a text that the model keeps beside it.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

/// A text by place and length; TextStore::view() gives it back.
///
/// Half the size of a view, and a model holds millions of them. Cheap to copy; means something
/// only together with the store that it came from.
struct TextRef {
    // Lengths that no text in a document has: of no text, and of a text that the store keeps,
    // where the offset counts these.
    static constexpr std::uint32_t absent = 0xFFFFFFFEU;
    static constexpr std::uint32_t kept = 0xFFFFFFFFU;

    std::uint32_t offset = 0;
    std::uint32_t length = absent;

    /// No text at all, which is not the empty text.
    bool isAbsent() const { return length == absent; }
};

/// The texts of one model: what was read, which belongs to a SourceText, and what was composed.
///
/// Owned by the model's tables; views stay valid as long as those. Constant operations may be
/// called from any thread.
class TextStore {
public:
    /// Texts that were read lie from `base` on.
    explicit TextStore(const char* base) : base_(base) {}
    const char* base() const { return base_; }

    /// A text that was read: `text` must lie behind `base`, less than 4 GiB from it.
    TextRef ref(std::string_view text) const {
        return {static_cast<std::uint32_t>(text.data() - base_),
                static_cast<std::uint32_t>(text.size())};
    }

    /// Keeps a text that does not stand in what was read.
    TextRef keep(std::string text);

    /// The text behind a reference; without characters where it is absent.
    std::string_view view(TextRef text) const {
        return text.length < TextRef::absent ? std::string_view(base_ + text.offset, text.length)
                                             : specialView(text);
    }

private:
    std::string_view specialView(TextRef text) const;

    const char* base_;
    std::deque<std::string> kept_;
};
