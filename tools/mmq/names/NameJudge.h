// Single names: whether objects can have them, and what to say where they cannot.
#pragma once

#include <string>
#include <vector>

#include "ExpressionText.h"
#include "ast/ExpressionNode.h"
#include "names/NameVocabulary.h"

namespace mmq {

/// What is to be said about the names of one expression, in the order of the text.
struct NameFindings {
    std::vector<TextError> errors;  ///< names that no object can have
    std::vector<TextError> notes;   ///< names that are right, but that documents do not hold
};

/// What to say about a class that a vocabulary does not have, and advice, which may be empty.
std::string sentenceForClass(const std::string& name, const NameVocabulary& vocabulary);
std::string hintForClass(const std::string& name, const NameVocabulary& vocabulary);

/// Judges names one by one, by the classes of the objects that they are applied to, and collects
/// what is to be said. Borrows the vocabulary.
class NameJudge {
public:
    explicit NameJudge(const NameVocabulary& vocabulary) : vocabulary_(vocabulary) {}

    void judgeAttribute(const StringConstantNode& name, const ClassSet& classes);
    void judgeAssociation(const DefinitionAssociationNode& step, const ClassSet& classes);
    void judgeClass(const StringConstantNode& name);

    NameFindings takeFindings();

private:
    struct Use {
        std::string name;
        const SourceSpan& span;
        ReadAs readAs;
        std::string before;  // what stands before and behind the name in the text
        std::string after;
    };

    void judge(const Use& use, const ClassSet& classes);
    std::string sentenceFor(const Use& use, const ClassSet& classes) const;
    std::string hintFor(const Use& use, const ClassSet& classes) const;
    std::string noteFor(const Use& use, LeftOut leftOut) const;
    std::string denial(const ClassSet& classes, const std::string& kind) const;
    bool isOnlyAttribute(const Use& use, const ClassSet& classes) const;

    const NameVocabulary& vocabulary_;
    NameFindings findings_;
};

}  // namespace mmq
