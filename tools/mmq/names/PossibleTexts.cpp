#include "names/PossibleTexts.h"

#include <algorithm>

#include "support/OrvStack.h"

namespace mmq {

namespace {

// What may be more texts than this is not followed: lets that choose among others could make each
// part of a long expression as long as the whole.
constexpr std::size_t mostConstants = 100;

void add(const StringConstantNode& constant, PossibleTexts& texts) {
    std::vector<const StringConstantNode*>& constants = texts.constants;
    if (constants.size() == mostConstants) {
        texts.hasOthers = true;
    } else if (std::find(constants.begin(), constants.end(), &constant) == constants.end()) {
        constants.push_back(&constant);
    }
}

}  // namespace

bool PossibleTexts::hasConstant(std::string_view text) const {
    return std::any_of(constants.begin(), constants.end(),
                       [text](const auto* constant) { return constant->getText() == text; });
}

void TextFollower::enter(const LetExpressionNode& let) {
    lets_[let.getBoundVariable().get()] = follow(*let.getSource());
}

PossibleTexts TextFollower::follow(const ExpressionNode& node) const {
    PossibleTexts texts;
    collect(node, texts);
    return texts;
}

void TextFollower::collect(const ExpressionNode& node, PossibleTexts& texts) const {
    if (!OrvStack::hasRoom()) {
        texts.hasOthers = true;
        return;
    }
    switch (node.getExpressionKind()) {
        case ExpressionKind::stringConstant:
            return add(static_cast<const StringConstantNode&>(node), texts);
        case ExpressionKind::applicationExpression:
            return collectCall(static_cast<const ApplicationExpressionNode&>(node), texts);
        case ExpressionKind::path:
            return collectVariable(static_cast<const PathNode&>(node), texts);
        case ExpressionKind::letExpression:
            return collect(*static_cast<const LetExpressionNode&>(node).getExpr(), texts);
        case ExpressionKind::ifExpression: {
            const auto& conditional = static_cast<const IfExpressionNode&>(node);
            collect(*conditional.getThen(), texts);
            return collect(*conditional.getElse(), texts);
        }
        default:
            texts.hasOthers = true;
    }
}

void TextFollower::collectCall(const ApplicationExpressionNode& node, PossibleTexts& texts) const {
    const std::string_view name = node.getName();
    const ExpressionNode& argument = *node.getExpr();
    const bool isSmall = name == "tolower";
    if (name == "class") {
        texts.hasClassName = true;
    } else if (name == "string") {
        collect(argument, texts);
    } else if (isSmall || name == "toupper") {
        texts.letters = isSmall ? Letters::small : Letters::capital;
        collect(argument, texts);
    } else if (name == "alternation" &&
               argument.getExpressionKind() == ExpressionKind::tupleExpression) {
        for (const ExpressionPtr& side :
             static_cast<const TupleExpressionNode&>(argument).getElements()) {
            collect(*side, texts);
        }
    } else {
        texts.hasOthers = true;
    }
}

void TextFollower::collectVariable(const PathNode& node, PossibleTexts& texts) const {
    const auto let = lets_.find(node.getAnchorVariable().get());
    if (let == lets_.end() || node.getAssociation()) {
        texts.hasOthers = true;
        return;
    }
    for (const StringConstantNode* constant : let->second.constants) {
        add(*constant, texts);
    }
    texts.hasClassName = texts.hasClassName || let->second.hasClassName;
    texts.hasOthers = texts.hasOthers || let->second.hasOthers;
    texts.letters = let->second.letters == Letters::asTheyAre ? texts.letters : let->second.letters;
}

}  // namespace mmq
