// What the parts of an expression are: their types, and where names are declared.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Compilation.h"
#include "assist/Completion.h"
#include "assist/TokenList.h"

namespace mmq {

/// The bytes of a part of a text.
struct TextRange {
    std::size_t offset = 0;
    std::size_t endOffset = 0;
};

/// A part of an expression with its type.
struct TypedPart {
    TextRange range;
    std::string text;     ///< the part, on one line, perhaps cut
    std::string type;     ///< of a function that is applied, the type of the function
    std::string classes;  ///< a sentence about the objects that a name is applied to, or empty
};

/// A text that was analysed once, to be asked about its parts. A text that ends before its
/// expression does is analysed with an ending; of any other that does not parse, nothing is known.
/// Belongs to one thread.
class TextMeaning {
public:
    explicit TextMeaning(const std::string& text);

    /// The part whose token stands at a byte: a name, or the operation that the token belongs to.
    /// Nothing where there is no token, or where the part has no type.
    std::optional<TypedPart> typeAt(std::size_t offset, const NameSource& names) const;

    /// Where the variable or the label is declared whose name stands at a byte. Nothing for other
    /// words, and for what is declared nowhere in the text.
    std::optional<TextRange> definitionAt(std::size_t offset) const;

private:
    ASTNode* partAt(const PlacedToken& token) const;
    const PlacedToken* nameToken(const ASTNode& node) const;
    OrvCountedPtr<VariableSymbol> variableAt(const PlacedToken& token, const ASTNode& part) const;
    TypePtr typeOfToken(const PlacedToken& token, ASTNode& part) const;
    TextRange written(std::size_t offset, std::size_t endOffset) const;
    std::string snippet(const TextRange& range) const;
    std::string classesAt(const ASTNode& part, const NameSource& names) const;

    std::size_t length_;  // without the ending
    std::string text_;
    TokenList tokens_;
    Analysis analysis_;
};

}  // namespace mmq
