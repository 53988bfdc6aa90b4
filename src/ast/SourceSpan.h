// A piece of the text of an expression.
#pragma once

#include <cstdint>

/// Where a part of an expression stands in its text. Plain data, copied freely.
struct SourceSpan {
    /// The place at which a person would point for the part, as messages give it: the operator of
    /// a binary or relational expression, else the first token. Counted from 1; -1 for nowhere.
    std::int32_t line = -1;
    std::int32_t column = -1;
    /// The bytes of the part, from `offset` up to but not including `endOffset`, counted from 0,
    /// with parentheses round it. No bytes where the part is not written: the anchor of
    /// "$name".
    std::uint32_t offset = 0;
    std::uint32_t endOffset = 0;
};
