#include "parser/TokenNumber.h"

#include <array>

std::string_view tokenName(int tokenNumber) {
    static constexpr std::array<std::string_view, 104> names = {
        "Invalid", "EOF", "[\\ \\r]", "\\t", "\\n",
        // 5 to 31: operators and punctuation
        "=", "<>", "~=", "~<>", "<", "<=", ">", ">=", "+", "-", "*", "/", "&", "->", "(", ")", "{",
        "}", "@", ";", ":", "^", "_", "=>", ",", "$", "|=>",
        // 32 to 62: keywords between classes of tokens
        "RelationalOperator", "ArithmeticOperator", "for_all", "there_exists", "let", "in", "if",
        "then", "else", "map", "filter", "traverse", "sort", "sortd", "over", "implies", "and",
        "or", "not", "of", "this", "current", "model", "string", "integer", "real", "boolean",
        "CompositeExpr", "BooleanOperator", "PervasiveVariable", "ConversionOperator",
        // 63 to 71: numbers and comments
        "INTEGER_LITERAL", "REAL_LITERAL", "\\*\\)", "\\(\\*", "\\*\\)", "\\*", "\\t", "\\n",
        "~[\\* \\t \\n]+",
        // 72 to 82: strings
        "\"", "STRING_LITERAL", "\\\\\"", "\\\\\\\\", "\\\\n", "\\\\r", "\\\\t", "\\r\\n", "\\r",
        "\\n", "~[\" \\ \\r \\n]+",
        // 83 to 93: association names
        "\\[", "AssociationName", "\\\\\\]", "\\\\\\\\", "\\\\n", "\\\\r", "\\\\t", "\\r\\n", "\\r",
        "\\n", "~[\\] \\ \\r \\n]+",
        // 94 to 103: patterns, constants and identifiers
        "\\`", "RegularExpression", "\\r\\n", "\\r", "\\n", "~[\\` \\r \\n]+", "Constant",
        "VariableOrFunction", "TOK_TRUE", "TOK_FALSE"};
    const auto index = static_cast<std::size_t>(tokenNumber);
    return tokenNumber >= 0 && index < names.size() ? names[index] : names[TOKEN_INVALID];
}
