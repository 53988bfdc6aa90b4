// The names of elements and attributes in a document, and the name spaces of their prefixes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "fliodram/MMModel.h"
#include "repository/NameTable.h"

/// What a name space is to a reader of models.
enum class NamespaceKind : std::uint8_t {
    undeclared,  // a prefix without a declaration is an error
    model,       // any name space that is none of the following, and none at all
    xmi,
    schemaInstance,
    declaration  // of the attributes that declare name spaces
};

/// What an attribute is to a reader of models, by its name and name space.
enum class XmlRole : std::uint8_t {
    undeclared,
    declaration,
    feature,  // of the model
    plainId,  // a feature, too
    href,     // a feature where it makes no reference
    xmiId,
    xmiType,
    xmiIdref,
    schemaType,
    schemaNil,
    foreign,  // of XMI or the schema instance, and nothing to the model
    count
};

/// A name as it is written, taken apart.
struct XmlName {
    std::string_view text;  // a zero byte follows, and SourceText::slack bytes of anything
    std::string_view local;
    std::uint32_t prefix = 0;
    MMKey feature = mmUnknownKey;                 // of the local name, once it has been asked for
    std::uint32_t lastElement = 0;                // in which an attribute had this name
    std::uint32_t classNumber = NameTable::none;  // of the class, where it is the name of one
    std::uint32_t roleVersion = 0;                // for which the role is known
    XmlRole role = XmlRole::undeclared;
};

/// All names of one document, each once, and the declarations that are in force.
///
/// Holds views into the text. Used by one reader, from element to element in document order.
class XmlNames {
public:
    /// The prefix of names without a prefix.
    static constexpr std::uint32_t noPrefix = 0;

    XmlNames();

    /// The number of a name.
    std::uint32_t find(const char* text) {
        const std::uint32_t recent = recent_[recentSlot(text)];
        return isEqual(text, names_[recent].text.data()) ? recent : findOther(text);
    }
    XmlName& name(std::uint32_t number) { return names_[number]; }

    NamespaceKind ofElement(const XmlName& name) const { return kinds_[name.prefix]; }
    /// What an attribute of this name is under the declarations in force.
    XmlRole ofAttribute(XmlName& name) {
        if (name.roleVersion != version_) {
            name.role = findRole(name);
            name.roleVersion = version_;
        }
        return name.role;
    }

    /// True where a name has at most one colon, and characters on both sides of it.
    static bool isWellFormed(std::string_view name);

    /// What a name space is, by its identifier.
    static NamespaceKind kindOf(std::string_view uri);

    /// Puts the declaration of an attribute in force, for the element at a depth and what it holds.
    void declare(const XmlName& attribute, std::string_view uri, std::size_t depth);
    /// Ends the declarations of an element at a depth.
    void leave(std::size_t depth) {
        while (!hidden_.empty() && hidden_.back().depth == depth) {
            restore();
        }
    }

private:
    // What a declaration hides while it is in force.
    struct Hidden {
        std::uint32_t prefix;
        NamespaceKind kind;
        std::size_t depth;
    };

    // Names are read eight bytes at a time, behind their ends, too, where the text has slack.
    static std::uint64_t word(const char* text) {
        static_assert(std::endian::native == std::endian::little);
        std::uint64_t result = 0;
        std::memcpy(&result, text, sizeof result);
        return result;
    }
    // A mask of the bytes up to the first zero byte and with it; 0 where there is none.
    static std::uint64_t maskToEnd(std::uint64_t word) {
        constexpr std::uint64_t ones = 0x0101010101010101U;
        const std::uint64_t zeros = (word - ones) & ~word & (ones << 7U);
        return zeros == 0 ? 0 : zeros ^ (zeros - 1);
    }
    static bool isEqual(const char* a, const char* b) {
        for (;; a += 8, b += 8) {
            const std::uint64_t mask = maskToEnd(word(a));
            if (mask != 0) {
                return ((word(a) ^ word(b)) & mask) == 0;
            }
            if (word(a) != word(b)) {
                return false;
            }
        }
    }
    static std::size_t recentSlot(const char* text) {
        const std::uint64_t mask = maskToEnd(word(text));
        const std::uint64_t start = word(text) & (mask == 0 ? ~std::uint64_t{0} : mask);
        return static_cast<std::size_t>((start * 0x9E3779B97F4A7C15U) >> 54U);
    }
    XmlRole findRole(const XmlName& name) const;
    std::uint32_t findOther(const char* text);
    std::uint32_t prefixNumber(std::string_view prefix);
    void restore();

    NameTable numbers_;
    std::array<std::uint32_t, 1024> recent_{};  // by the first eight bytes, the last name
    std::vector<XmlName> names_;
    NameTable prefixes_;
    std::vector<NamespaceKind> kinds_;  // by prefix
    std::vector<Hidden> hidden_;
    std::uint32_t version_ = 1;  // of the declarations in force
};
