// The texts that a part of an expression may come to.
#pragma once

#include <unordered_map>
#include <vector>

#include "ast/ExpressionNode.h"

namespace mmq {

/// Whether letters of a text were made small or capital.
enum class Letters { asTheyAre, small, capital };

/// What a text may be: one of some constants, the name of an object's class, or any other text.
struct PossibleTexts {
    std::vector<const StringConstantNode*> constants;
    bool hasClassName = false;
    bool hasOthers = false;
    Letters letters = Letters::asTheyAre;  ///< in some of them

    /// Whether it is the name of a class, unless it is a constant.
    bool isClassName() const { return hasClassName && !hasOthers; }
    bool hasConstant(std::string_view text) const;
};

/// Follows texts through variables of lets, both branches of an "if", both sides of "|=>", and the
/// functions that change only their letters.
///
/// Belongs to one walk over an expression, whose nodes it borrows.
class TextFollower {
public:
    /// Takes notice of a let, before what stands in it is followed.
    void enter(const LetExpressionNode& let);

    PossibleTexts follow(const ExpressionNode& node) const;

private:
    void collect(const ExpressionNode& node, PossibleTexts& texts) const;
    void collectCall(const ApplicationExpressionNode& node, PossibleTexts& texts) const;
    void collectVariable(const PathNode& node, PossibleTexts& texts) const;

    std::unordered_map<const VariableSymbol*, PossibleTexts> lets_;
};

}  // namespace mmq
