// What the parts of an explanation share.
#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>

#include "ast/ASTVisitor.h"
#include "support/OrvStack.h"
#include "why/Evidence.h"
#include "why/PartEvaluator.h"

namespace mmq {

/// An explanation in the making: the evidence so far, and the lets that have been entered. Borrows
/// the evaluator; made on the stack.
struct Explanation {
    /// As many lines as somebody reads; what is found after them is left out.
    static constexpr std::size_t mostLines = 100;

    /// A let: what it binds, and whether that was explained.
    struct Let {
        ExpressionNode* source;
        bool isExplained;
    };

    PartEvaluator& parts;
    Evidence evidence;
    std::unordered_map<const VariableSymbol*, Let> lets;

    /// The line of the part that is being explained: the one that was added last.
    EvidenceLine& line() { return evidence.lines.back(); }
    bool isFailing() { return isFailure(line().value); }

    /// Whether the stack has room for going further down; else the evidence is cut.
    bool hasRoom() {
        evidence.isCut = evidence.isCut || !OrvStack::hasRoom();
        return !evidence.isCut;
    }

    bool add(EvidenceLine added) {
        evidence.isCut = evidence.isCut || evidence.lines.size() == mostLines;
        if (!evidence.isCut) {
            evidence.lines.push_back(std::move(added));
        }
        return !evidence.isCut;
    }

    /// Adds that what follows about `body` is about the object, which is its "current".
    bool addSubject(const ExpressionNode& body, MMObject object) {
        static const std::string current(anchorText(AnchorKind::CURRENT));
        EvidenceLine subject(body.getSpan(), object);
        subject.bind(EvidenceLine::Kind::subject, current, object);
        return add(std::move(subject));
    }

    /// The let whose variable the node is, if it is one that has been entered.
    Let* letOf(const PathNode& node) {
        const auto found = lets.find(node.getAnchorVariable().get());
        return found != lets.end() && !node.getAssociation() ? &found->second : nullptr;
    }
};

/// Keeps a let entered, with nothing cached, for as long as this object lives. A let whose variable
/// is not used caches nothing.
class LetScope {
public:
    LetScope(Explanation& explanation, const LetExpressionNode& let) {
        if (MMCachedExpr* const cache = explanation.parts.cacheOf(let)) {
            scope_.emplace(*cache);
            explanation.lets[let.getBoundVariable().get()] = {let.getSource().get(), false};
        }
    }

private:
    std::optional<MMCacheScope> scope_;
};

}  // namespace mmq
