#include "api/AttributeShortcut.h"

#include <array>
#include <cstdint>

#include "fliodram/MMAttrExpr.h"
#include "fliodram/MMConstantExpr.h"
#include "foundation/OrvCyclicPtr.h"

namespace {

enum Kind : std::uint8_t { BLANK = 1, LETTER = 2, DIGIT = 4 };

/// Of which kinds each byte is.
struct KindTable {
    constexpr KindTable() {
        add(" \t\n", BLANK);
        add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", LETTER);
        add("0123456789", DIGIT);
    }
    constexpr void add(std::string_view bytes, Kind kind) {
        for (const char byte : bytes) {
            kinds[static_cast<unsigned char>(byte)] = kind;
        }
    }

    std::array<std::uint8_t, 256> kinds{};
};

constexpr KindTable kindTable;

bool isOneOf(char c, unsigned kinds) {
    return (kindTable.kinds[static_cast<unsigned char>(c)] & kinds) != 0;
}

// The first place from `from` on where the byte is of none of these kinds.
const char* pass(const char* from, const char* end, unsigned kinds) {
    while (from != end && isOneOf(*from, kinds)) {
        ++from;
    }
    return from;
}

}  // namespace

std::string_view findBareAttribute(std::string_view text) {
    const char* const end = text.data() + text.size();
    const char* const dollar = pass(text.data(), end, BLANK);
    if (dollar == end || *dollar != '$') {
        return {};
    }
    const char* const name = pass(dollar + 1, end, BLANK);
    if (name == end || !isOneOf(*name, LETTER)) {
        return {};
    }
    const char* const nameEnd = pass(name, end, LETTER | DIGIT);
    const char* const rest = pass(nameEnd, end, BLANK);
    const bool isAll = rest == end || *rest == '\0';
    return isAll ? std::string_view(name, static_cast<std::size_t>(nameEnd - name))
                 : std::string_view();
}

OrvCountedPtr<CompileResult> compileAttributeShortcut(const std::string& text) {
    const std::string_view name = findBareAttribute(text);
    if (name.empty()) {
        return {};
    }
    OrvCountedPtr<CompileResult> result(new CompileResult);
    result->objectVariable = OrvCountedPtr<MMObjectVarExpr>(new MMObjectVarExpr);
    const OrvCyclicPtr<MMValueExpr> constant(new MMConstantExpr(MMValue(std::string(name))));
    const OrvCyclicLoan<MMObjectExpr> variable(result->objectVariable.get());
    result->body = OrvCountedPtr<OrvCyclicPtrBody>(new MMAttrExpr(constant, variable));
    return result;
}
