#include "assist/TextMeaning.h"

#include <algorithm>
#include <utility>

#include "assist/NodeSearch.h"
#include "assist/PartialText.h"
#include "ast/ExpressionNode.h"
#include "namespace/Symbol.h"
#include "parser/TokenNumber.h"
#include "types/TypeExprPrintVisitor.h"

namespace mmq {

namespace {

using VariablePtr = OrvCountedPtr<VariableSymbol>;

bool isApplication(const ASTNode& node) {
    return node.getNodeKind() == NodeKind::expression &&
           static_cast<const ExpressionNode&>(node).getExpressionKind() ==
               ExpressionKind::applicationExpression;
}

// The node as an expression of one kind, or null.
template <class Node>
const Node* as(const ASTNode& node, ExpressionKind kind) {
    const bool isMeant = node.getNodeKind() == NodeKind::expression &&
                         static_cast<const ExpressionNode&>(node).getExpressionKind() == kind;
    return isMeant ? static_cast<const Node*>(&node) : nullptr;
}

// The step, if the node is one of this kind, or null.
template <class Step>
const Step* as(const ASTNode& node, AssociationKind kind) {
    const bool isMeant = node.getNodeKind() == NodeKind::association &&
                         static_cast<const AssociationNode&>(node).getAssociationKind() == kind;
    return isMeant ? static_cast<const Step*>(&node) : nullptr;
}

// The variable that a quantifier or a let declares; empty for other nodes.
VariablePtr declaredVariable(const ASTNode& node) {
    for (const ExpressionKind kind :
         {ExpressionKind::universalQuantifier, ExpressionKind::existentialQuantifier}) {
        if (const auto* const quantifier = as<QuantifierNode>(node, kind)) {
            return quantifier->getBoundVariable();
        }
    }
    const auto* const let = as<LetExpressionNode>(node, ExpressionKind::letExpression);
    return let != nullptr ? let->getBoundVariable() : VariablePtr();
}

const DefinitionAssociationNode* asStep(const ASTNode& node) {
    return as<DefinitionAssociationNode>(node, AssociationKind::definition);
}

std::string classList(const ClassSet& classes, const NameVocabulary& vocabulary) {
    constexpr std::size_t most = 5;
    std::string list;
    std::size_t count = 0;
    classes.forEach([&](ClassNumber number) {
        if (count++ < most) {
            list.append(list.empty() ? "" : ", ").append(vocabulary.className(number));
        }
    });
    return count > most ? list + " and " + std::to_string(count - most) + " more" : list;
}

}  // namespace

TextMeaning::TextMeaning(const std::string& text)
    : length_(text.size()),
      text_(withEnding(text).value_or(text)),
      tokens_(text_),
      analysis_(analyzeSilently(text_)) {}

TextRange TextMeaning::written(std::size_t offset, std::size_t endOffset) const {
    return {offset, std::min(endOffset, length_)};
}

// "$" and the name behind it are one application.
ASTNode* TextMeaning::partAt(const PlacedToken& token) const {
    const bool isAttribute = token.number == TOKEN_DOLLAR || (&token != tokens_.tokens().data() &&
                                                              (&token - 1)->number == TOKEN_DOLLAR);
    return findInnermost(*analysis_.nameSpace, token.offset,
                         isAttribute ? &isApplication : nullptr);
}

// The token of the name that a quantifier, a let or a step declares.
const PlacedToken* TextMeaning::nameToken(const ASTNode& node) const {
    const PlacedToken* const first = tokens_.findPlace({node.getLine(), node.getColumn()});
    return first == nullptr || asStep(node) != nullptr ? first : tokens_.next(*first);
}

VariablePtr TextMeaning::variableAt(const PlacedToken& token, const ASTNode& part) const {
    const auto* const path = as<PathNode>(part, ExpressionKind::path);
    if (path != nullptr) {
        const bool isAnchor = token.place == std::make_pair(part.getLine(), part.getColumn());
        return isAnchor ? path->getAnchorVariable() : VariablePtr();
    }
    return nameToken(part) == &token ? declaredVariable(part) : VariablePtr();
}

std::string TextMeaning::snippet(const TextRange& range) const {
    constexpr std::size_t longest = 60;
    std::string line;
    for (std::size_t at = range.offset; at < range.endOffset; ++at) {
        const bool isBlank = std::string_view(" \t\r\n").find(text_[at]) != std::string_view::npos;
        if (!isBlank || (!line.empty() && line.back() != ' ')) {
            line += isBlank ? ' ' : text_[at];
        }
    }
    if (line.size() > longest) {
        std::size_t end = longest;
        while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) {
            --end;
        }
        line.resize(end);
        line += "...";
    }
    return line;
}

// The type of a variable or of a function by its name, else that of the whole part.
TypePtr TextMeaning::typeOfToken(const PlacedToken& token, ASTNode& part) const {
    const VariablePtr variable = variableAt(token, part);
    if (variable) {
        return variable->getType();
    }
    if (isApplication(part) && token.number != TOKEN_DOLLAR &&
        token.place == std::make_pair(part.getLine(), part.getColumn())) {
        const auto& function = static_cast<const ApplicationExpressionNode&>(part);
        return function.getResolvedFunction() ? function.getResolvedFunction()->getType()
                                              : TypePtr();
    }
    return typeOf(analysis_, part);
}

std::string TextMeaning::classesAt(const ASTNode& part, const NameSource& names) const {
    const PlacedToken* const first = tokens_.findPlace({part.getLine(), part.getColumn()});
    const DefinitionAssociationNode* const step = asStep(part);
    const PlacedToken* const name =
        first != nullptr && isApplication(part) && first->number == TOKEN_DOLLAR
            ? tokens_.next(*first)
            : nullptr;
    if (names.vocabulary == nullptr || (step == nullptr && name == nullptr)) {
        return {};
    }
    const NameVocabulary& vocabulary = *names.vocabulary;
    const std::size_t offset = step != nullptr ? step->getNameSpan().offset : name->offset;
    const auto use = findNameUse(*analysis_.root, offset, vocabulary, names.classesOfThis);
    if (!use || use->classes.contains(vocabulary.allClasses())) {
        return {};
    }
    const std::string sentence = "Of " + classList(use->classes, vocabulary);
    return step == nullptr
               ? sentence + "."
               : sentence + "; reaches " +
                     classList(vocabulary.reach(use->classes, use->name), vocabulary) + ".";
}

std::optional<TypedPart> TextMeaning::typeAt(std::size_t offset, const NameSource& names) const {
    const PlacedToken* const token = tokens_.findAt(offset);
    ASTNode* const part = analysis_.root && token != nullptr ? partAt(*token) : nullptr;
    if (part == nullptr) {
        return {};
    }
    const TypePtr type = typeOfToken(*token, *part);
    if (!type || TypeExpression::isTypeError(type)) {
        return {};
    }
    const SourceSpan& span = part->getSpan();
    const DefinitionAssociationNode* const step = asStep(*part);
    const bool isName = variableAt(*token, *part) || TEFunction::classof(*type);
    TypedPart result;
    result.range = isName ? TextRange{token->offset, token->endOffset}
                   : step != nullptr
                       ? TextRange{step->getNameSpan().offset, step->getNameSpan().endOffset}
                       : written(span.offset, span.endOffset);
    result.text = snippet(result.range);
    result.type = printedType(type);
    result.classes = classesAt(*part, names);
    return result;
}

std::optional<TextRange> TextMeaning::definitionAt(std::size_t offset) const {
    const PlacedToken* const token = tokens_.findAt(offset);
    const ASTNode* const part = analysis_.root && token != nullptr ? partAt(*token) : nullptr;
    const PlacedToken* name = nullptr;
    if (part != nullptr) {
        const auto* const reference =
            as<ReferenceAssociationNode>(*part, AssociationKind::reference);
        const DefinitionAssociationNode* const step = asStep(*part);
        const VariablePtr variable = variableAt(*token, *part);
        if (reference != nullptr && reference->getLabelSymbol()) {
            name = nameToken(reference->getLabelSymbol()->getDeclaration());
        } else if (step != nullptr && !step->getLabel().empty() && nameToken(*step) == token) {
            name = token;
        }
        for (const NameSpace::Entry& entry : analysis_.nameSpace->entries()) {
            if (variable && declaredVariable(*entry.node) == variable) {
                name = nameToken(*entry.node);
            }
        }
    }
    return name != nullptr ? std::optional(TextRange{name->offset, name->endOffset}) : std::nullopt;
}

}  // namespace mmq
